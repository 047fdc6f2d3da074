import QtQuick
import Kestrix.Ui

// Where in a list one is, and how much of it there is. Follows the mouse or the first finger on it, whatever other fingers
// do; there is none for a list that is seen whole.
Item {
    id: bar
    required property ListView list
    property real bottomMargin: list.bottomMargin
    readonly property real position: list.visibleArea.yPosition
    readonly property real size: list.visibleArea.heightRatio
    readonly property bool held: finger.active // the list must not follow the finger then

    objectName: list.objectName + "ScrollBar"
    anchors {
        top: list.top
        right: list.right
        bottom: list.bottom
        bottomMargin: bar.bottomMargin
    }
    width: 5
    // Not for a rounding of the rows' heights.
    visible: list.contentHeight + list.bottomMargin - list.height > 4
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
    Item { // wider than what is seen
        anchors {
            fill: parent
            leftMargin: -6
        }

        TapHandler { // the rows behind it are not touched
            acceptedButtons: Qt.AllButtons
            gesturePolicy: TapHandler.ReleaseWithinBounds
        }
        PointHandler { // the later one hears first
            id: finger
            acceptedButtons: Qt.LeftButton
            onPointChanged: if (active) bar.scrollTo(point.position.y)
            onActiveChanged: if (active) bar.scrollTo(point.position.y)
        }
    }

    function scrollTo(y: real) {
        const range = list.contentHeight + list.bottomMargin - list.height
        list.contentY = list.originY + Math.max(0, Math.min(1, y / height)) * range
    }
}
