import QtQuick
import Kestrix.Ui

// A button that is a word in a frame, among the controls of a form.
Rectangle {
    id: frame
    required property Button button
    property alias titleSize: word.titleSize

    visible: !button.hidden
    color: word.held ? Colors.header : Colors.ink
    border {
        width: StageMetrics.line
        color: Colors.panelEdge
    }

    ButtonView {
        id: word
        anchors.fill: parent
        titleAlignment: Text.AlignHCenter
        titleSize: 12
        frameDistance: 3
        button: frame.button
    }
}
