import QtQuick
import Kestrix.Ui

// Draws a field that only shows: over several lines, and of a long text the beginning, as much as has room. It can be
// selected and copied.
Rectangle {
    id: view
    required property TextField field
    property int most: 384 // characters, of 128 bytes: to lay out a long text takes time

    objectName: field.objectName + "Ground"
    visible: !field.hidden
    color: Colors.field
    border {
        width: StageMetrics.line
        color: Colors.fieldEdge
    }

    TextEdit {
        id: shown
        objectName: view.field.objectName
        anchors {
            fill: parent
            margins: 6
        }
        text: view.field.text.length > view.most ? view.field.text.slice(0, view.most) + "…" : view.field.text
        textFormat: TextEdit.PlainText
        readOnly: true
        selectByMouse: true
        color: Colors.ink
        selectionColor: Colors.selection
        selectedTextColor: Colors.field
        font.family: "Arial"
        font.pixelSize: 12
        wrapMode: TextEdit.Wrap
        clip: true
        activeFocusOnTab: true
        Accessible.role: Accessible.EditableText
        Accessible.name: view.field.accessibleName
        Accessible.focusable: true
        Accessible.readOnly: true
        Accessible.ignored: !visible || !enabled
    }
    FocusFrame {
        visible: shown.activeFocus
    }
}
