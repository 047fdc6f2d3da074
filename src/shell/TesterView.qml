pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// Where the tester is looked for, how that goes, and where else it may be.
ScreenFrame {
    id: page
    required property TesterViewController screen
    // Of the form, by the keyboard on a phone's screen, in points.
    property real coveredByKeyboard: Qt.inputMethod.visible ? Qt.inputMethod.keyboardRectangle.height / StageMetrics.factor : 0 // qmllint disable type
    framed: screen

    objectName: "testerView"

    FormArea {
        id: form
        objectName: "testerForm"
        anchors.fill: parent
        coveredByKeyboard: page.coveredByKeyboard

        component Caption: LabelView {
            x: 12
            width: 60
            height: 30
            elide: Text.ElideRight
        }
        component Field: TextFieldView {
            x: 72
            width: 154
            height: 30
            onEditingChanged: if (editing) form.showField()
        }

        LabelView {
            x: 12
            y: 10
            width: 296
            height: 20
            label: page.screen.label("lblTesterName")
            elide: Text.ElideRight
        }
        Text {
            readonly property Label label: page.screen.label("lblTesterState")
            objectName: label.objectName
            x: 12
            y: 32
            width: 296
            height: 46
            text: label.text
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            fontSizeMode: Text.Fit
            minimumPixelSize: 8
            maximumLineCount: 5
            elide: Text.ElideRight
            color: label.textColor
            font.family: label.fontFamily
            font.pixelSize: label.fontSize
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            Accessible.ignored: !visible || !enabled
        }
        Rectangle {
            y: 84
            width: 320
            height: form.height - 84 - 84
            color: Colors.paper

            TableView {
                anchors.fill: parent
                table: page.screen.table("testers")
                rowName: "testerRow"
                title: qsTr("Where testers can be seen: %1").arg(count)
            }
        }
        Caption {
            y: form.height - 76
            label: page.screen.label("lblAddress")
        }
        Field {
            y: form.height - 76
            field: page.screen.textField("address")
        }
        PanelFrame {
            x: 234
            y: form.height - 76
            width: 74
            height: 30
            button: page.screen.button("btnConnect")
        }
        Caption {
            y: form.height - 38
            label: page.screen.label("lblCapture")
        }
        Field {
            y: form.height - 38
            field: page.screen.textField("capture")
        }
        PanelFrame {
            x: 234
            y: form.height - 38
            width: 74
            height: 30
            button: page.screen.button("btnOpen")
        }
    }
}
