import QtQuick

// Shows where the keyboard is: a light line and a dark one, of which one stands out on any ground.
Rectangle {
    objectName: "focusFrame"
    anchors.fill: parent
    color: "transparent"
    visible: parent.activeFocus
    border {
        width: 1
        color: "#ffd166"
    }

    Rectangle {
        anchors {
            fill: parent
            margins: 1
        }
        color: "transparent"
        border {
            width: 1
            color: "#10182a"
        }
    }
}
