import QtQuick
import Kestrix.Ui

// Shows where the keyboard is: a light line and a dark one, of which one stands out on any ground.
Rectangle {
    objectName: "focusFrame"
    anchors.fill: parent
    color: Colors.clear
    visible: parent.activeFocus
    border {
        width: 1
        color: Colors.focusLight
    }

    Rectangle {
        anchors {
            fill: parent
            margins: 1
        }
        color: Colors.clear
        border {
            width: 1
            color: Colors.focusDark
        }
    }
}
