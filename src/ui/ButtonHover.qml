import QtQuick
import Kestrix.Ui

// What a button shows while the mouse rests on it: a shade, and after a while what it does.
Item {
    id: hover
    required property ButtonView target

    Rectangle {
        objectName: "hoverShade"
        anchors.fill: parent
        visible: hover.target.rested
        color: Colors.hover
    }
    ToolTip {
        target: hover.target
        text: hover.target.hint
        wanted: hover.target.rested
    }
}
