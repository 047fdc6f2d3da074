import QtQuick
import Kestrix.Ui

// Shows where the keyboard is: a light line and a dark one, of which one stands out on any ground.
Rectangle {
    id: frame
    property int thickness: 1 // of each line
    property color outer: Colors.focusLight
    property color inner: Colors.focusDark

    objectName: "focusFrame"
    anchors.fill: parent
    color: Colors.clear
    visible: parent.activeFocus
    border {
        width: frame.thickness
        color: frame.outer
    }

    Rectangle {
        anchors {
            fill: parent
            margins: frame.thickness
        }
        color: Colors.clear
        border {
            width: frame.thickness
            color: frame.inner
        }
    }
}
