pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Storage

// The form that makes a test record of the measurements: what is typed, what is told, and what will be filed.
ScreenFrame {
    id: page
    required property SaveDataViewController screen
    // Of the form, by the keyboard on a phone's screen, in points.
    property real coveredByKeyboard: Qt.inputMethod.visible ? Qt.inputMethod.keyboardRectangle.height / StageMetrics.factor : 0 // qmllint disable type
    framed: screen
    lineY: 43

    objectName: "saveDataView"
    toolbarItems: ButtonView {
        id: save
        x: 252
        y: 7
        width: 60
        height: 30
        titleInset: 14
        button: page.screen.button("btnSave")

        Connections {
            target: page.screen.button("btnSave")
            function onKeyboardAsked() {
                save.forceActiveFocus(Qt.TabFocusReason)
            }
        }
    }

    FormArea {
        id: form
        objectName: "saveForm"
        anchors.fill: parent
        coveredByKeyboard: page.coveredByKeyboard

        component Caption: LabelView {
            x: 12
            width: 92
            height: 30
            elide: Text.ElideRight
        }
        component Field: TextFieldView {
            x: 108
            width: 200
            height: 30
            onEditingChanged: if (editing) form.showField()
        }

        Caption {
            y: 8
            label: page.screen.label("lblProjectName")
        }
        Field {
            y: 8
            field: page.screen.textField("projectName")
        }
        Caption {
            y: 42
            label: page.screen.label("lblCompany")
        }
        Field {
            y: 42
            field: page.screen.textField("company")
        }
        Caption {
            y: 76
            label: page.screen.label("lblAddress")
        }
        Field {
            y: 76
            field: page.screen.textField("address")
        }
        Caption {
            y: 110
            label: page.screen.label("lblOperator")
        }
        Field {
            y: 110
            field: page.screen.textField("operators")
        }
        Caption {
            y: 144
            label: page.screen.label("lblSerialNumber")
        }
        Field {
            y: 144
            field: page.screen.textField("serialNumber")
        }
        Caption {
            y: 180
            height: 22
            label: page.screen.label("lblSample")
        }
        Caption {
            x: 108
            y: 180
            width: 40
            height: 22
            label: page.screen.label("sample")
        }
        Caption {
            x: 12
            y: 202
            height: 22
            label: page.screen.label("lblStartTime")
        }
        Caption {
            x: 108
            y: 202
            width: 200
            height: 22
            label: page.screen.label("startTime")
        }
        PanelFrame {
            x: 152
            y: 178
            width: 156
            height: 26
            titleSize: 11
            button: page.screen.button("btnEarlier")
        }
        TableHeader {
            y: 230
            width: 320
            height: 25
            table: page.screen.table("filed")
        }
        Rectangle {
            y: 255
            width: 320
            height: form.height - y
            color: Colors.paper
        }
        TableView {
            y: 255
            width: 320
            height: form.height - y
            table: page.screen.table("filed")
            rowName: "filedRow"
            title: qsTr("Measurements to be saved: %1").arg(count)
        }
    }
}
