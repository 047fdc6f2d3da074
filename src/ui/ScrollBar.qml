import QtQuick
import Kestrix.Ui

// Where in a list one is, and how much of it there is. Takes the mouse and a finger; there is none for a list
// that is seen whole.
Item {
    id: bar
    required property ListView list
    property real bottomMargin: list.bottomMargin
    readonly property real position: list.visibleArea.yPosition
    readonly property real size: list.visibleArea.heightRatio

    objectName: list.objectName + "ScrollBar"
    anchors {
        top: list.top
        right: list.right
        bottom: list.bottom
        bottomMargin: bar.bottomMargin
    }
    width: 5
    visible: size < 0.999
    Accessible.ignored: true // the list itself says how long it is, and takes the keys

    Rectangle {
        anchors.fill: parent
        color: Colors.scrollTrack
    }
    Rectangle {
        objectName: bar.list.objectName + "ScrollThumb"
        readonly property real least: 12
        readonly property real room: bar.height - height
        y: Math.max(0, Math.min(room, bar.size < 1 ? bar.position / (1 - bar.size) * room : 0))
        width: parent.width
        height: Math.max(least, bar.size * bar.height)
        color: Colors.scrollThumb
    }
    MouseArea {
        anchors {
            fill: parent
            leftMargin: -6
        }
        preventStealing: true
        onPressed: mouse => bar.scrollTo(mouse.y)
        onPositionChanged: mouse => bar.scrollTo(mouse.y)
    }

    function scrollTo(y: real) {
        const range = list.contentHeight + list.bottomMargin - list.height
        list.contentY = list.originY + Math.max(0, Math.min(1, y / height)) * range
    }
}
