pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.History

// A mail before it is sent: to whom, what about, what is attached; then the server that takes it.
ScreenFrame {
    id: page
    required property MailComposeViewController screen
    // Of the form, by the keyboard on a phone's screen, in points.
    property real coveredByKeyboard: Qt.inputMethod.visible ? Qt.inputMethod.keyboardRectangle.height / StageMetrics.factor : 0 // qmllint disable type
    framed: screen
    lineY: 43

    component Word: ButtonView {
        id: word
        y: 7
        width: 64
        height: 30
        titleAlignment: Text.AlignHCenter

        Connections {
            target: word.button
            function onKeyboardAsked() {
                word.forceActiveFocus(Qt.TabFocusReason)
            }
        }
    }

    objectName: "mailComposeView"
    toolbarItems: [
        Word {
            x: 6
            button: page.screen.button("btnCancel")
        },
        Word {
            x: 250
            button: page.screen.button("btnSend")
        }
    ]

    FormArea {
        id: form
        objectName: "mailForm"
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
        component Told: LabelView {
            x: 108
            width: 200
            height: 24
            elide: Text.ElideRight
        }

        Caption {
            y: 8
            label: page.screen.label("lblRecipient")
        }
        Field {
            y: 8
            field: page.screen.textField("recipient")
        }
        Caption {
            y: 42
            label: page.screen.label("lblSubject")
        }
        Field {
            y: 42
            field: page.screen.textField("subject")
        }
        Caption {
            y: 76
            height: 24
            label: page.screen.label("lblMessage")
        }
        Told {
            y: 76
            label: page.screen.label("messageText")
        }
        Caption {
            y: 100
            height: 24
            label: page.screen.label("lblAttachment")
        }
        Told {
            y: 100
            label: page.screen.label("attachmentText")
        }
        LabelView {
            y: 130
            width: 320
            height: 22
            label: page.screen.label("lblServerTitle")
            Accessible.role: Accessible.Heading
        }
        Caption {
            y: 160
            label: page.screen.label("lblServer")
        }
        Field {
            y: 160
            width: 124
            field: page.screen.textField("server")
        }
        PanelFrame {
            x: 236
            y: 160
            width: 72
            height: 30
            button: page.screen.button("btnSecurity")
        }
        Caption {
            y: 194
            label: page.screen.label("lblUser")
        }
        Field {
            y: 194
            field: page.screen.textField("user")
        }
        Caption {
            y: 228
            label: page.screen.label("lblPassword")
        }
        Field {
            y: 228
            field: page.screen.textField("password")
        }
        Caption {
            y: 262
            label: page.screen.label("lblFrom")
        }
        Field {
            y: 262
            field: page.screen.textField("from")
        }
        Rectangle { // how much of it is sent
            objectName: "mailProgressTrack"
            x: 12
            y: 302
            width: 296
            height: 6
            visible: page.screen.progress > 0
            color: Colors.scrollTrack

            Rectangle {
                objectName: "mailProgress"
                width: parent.width * page.screen.progress
                height: parent.height
                color: Colors.focusLight
            }
        }
        Text {
            readonly property Label label: page.screen.label("status")
            objectName: "status"
            x: 12
            y: 312
            width: 296
            height: 64
            text: label.text
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            maximumLineCount: 4
            elide: Text.ElideRight
            color: label.textColor
            font.family: "Arial"
            font.pixelSize: 13
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
            Accessible.ignored: !visible || !enabled || text === ""
        }
        PanelFrame {
            x: 152
            y: Math.min(form.height, 434) - 50
            width: 156
            height: 32
            button: page.screen.button("btnDraft")
        }
    }
}
