pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// Draws the alert that is shown, in front of everything. What lies behind has to be disabled meanwhile. It comes with the
// keyboard on the button that Enter presses, and shows that.
FocusScope {
    id: view
    required property Alerts alerts

    objectName: "alert"
    visible: alerts.shown
    focus: visible // so that keys end here even while none of its buttons has them
    onVisibleChanged: {
        const last = buttons.itemAt(buttons.count - 1)
        if (visible && last !== null)
            last.forceActiveFocus(Qt.PopupFocusReason)
    }
    Keys.onPressed: event => event.accepted = alerts.pressKey(event.key, event.modifiers, event.isAutoRepeat)

    Rectangle {
        objectName: "alertDim"
        anchors.fill: parent
        color: Colors.stage
        opacity: 0.7
    }
    Rectangle {
        id: panel
        objectName: "alertPanel"
        anchors.centerIn: parent
        width: 270
        height: column.height + 24
        color: Colors.ink
        border {
            width: StageMetrics.line
            color: Colors.panelEdge
        }
        Accessible.role: Accessible.AlertMessage
        Accessible.name: view.alerts.title
            + (view.alerts.title !== "" && view.alerts.text !== "" ? ". " : "") + view.alerts.text
        Accessible.ignored: !visible

        Column {
            id: column
            x: 16
            y: 12
            width: panel.width - 2 * x
            spacing: 8

            Text {
                objectName: "alertTitle"
                width: parent.width
                visible: text !== ""
                text: view.alerts.title
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
                color: Colors.textOnDark
                font.family: "Arial"
                font.pixelSize: 17
                font.bold: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
                Accessible.ignored: !visible
            }
            Text {
                objectName: "alertText"
                width: parent.width
                visible: text !== ""
                text: view.alerts.text
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                maximumLineCount: 14
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                color: Colors.textOnDark
                font.family: "Arial"
                font.pixelSize: 14
                Accessible.role: Accessible.StaticText
                Accessible.name: text
                Accessible.ignored: !visible
            }
            Repeater {
                id: buttons
                model: view.alerts.buttons
                delegate: PanelButton {
                    required property int index
                    required property string modelData
                    objectName: "alertButton" + index
                    width: column.width
                    title: modelData
                    border {
                        width: StageMetrics.line
                        color: Colors.header
                    }
                    onPressed: view.alerts.answer(index)
                    Component.onCompleted: {
                        if (index === view.alerts.buttons.length - 1)
                            forceActiveFocus(Qt.PopupFocusReason)
                    }
                }
            }
        }
    }
}
