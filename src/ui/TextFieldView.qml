import QtQuick
import Kestrix.Ui

// Draws a TextField, and edits it: with the keyboard, an input method, and what the clipboard holds.
Rectangle {
    id: view
    required property TextField field
    readonly property alias editing: input.activeFocus

    objectName: field.objectName + "Ground"
    visible: !field.hidden
    implicitHeight: 30
    color: Colors.field
    border {
        width: StageMetrics.line
        color: Colors.fieldEdge
    }

    TextInput {
        id: input
        objectName: view.field.objectName
        anchors {
            fill: parent
            leftMargin: 8
            rightMargin: 8
        }
        text: view.field.text
        echoMode: view.field.secret ? TextInput.Password : TextInput.Normal
        inputMethodHints: view.field.secret ? Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase : Qt.ImhNone
        readOnly: view.field.locked
        color: Colors.ink
        selectionColor: Colors.selection
        selectedTextColor: Colors.field
        font.family: "Arial"
        font.pixelSize: 14
        verticalAlignment: TextInput.AlignVCenter
        selectByMouse: true
        clip: true
        activeFocusOnTab: true
        onTextEdited: view.field.edit(text)
        onAccepted: view.field.pressReturn()
        onActiveFocusChanged: view.field.setEditing(activeFocus)
        onVisibleChanged: if (view.field.hidden) focus = false
        Accessible.role: Accessible.EditableText
        Accessible.name: view.field.accessibleName
        Accessible.description: view.field.placeholder
        Accessible.focusable: true
        Accessible.readOnly: view.field.locked
        Accessible.ignored: !visible || !enabled

        Connections {
            target: view.field
            function onTextChanged() {
                if (input.text !== view.field.text)
                    input.text = view.field.text
            }
            function onEditingEnded() {
                input.focus = false
            }
            function onKeyboardAsked() {
                input.forceActiveFocus(Qt.TabFocusReason)
            }
        }
    }
    Text {
        objectName: view.field.objectName + "Placeholder"
        anchors.fill: input
        visible: input.text === "" && input.preeditText === ""
        text: view.field.placeholder
        textFormat: Text.PlainText
        color: Colors.placeholder
        font: input.font
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    FocusFrame {
        visible: input.activeFocus
    }
}
