import QtQuick
import Kestrix.Ui

// Where in a list, or in any other area, one is, and how much of it there is. Follows the mouse or the first finger on it, whatever other fingers
// do; there is none for one that is seen whole.
Item {
    id: bar
    required property Flickable area
    property color track: Colors.scrollTrack
    property color thumb: Colors.scrollThumb
    property real bottomMargin: area.bottomMargin
    readonly property real position: area.visibleArea.yPosition
    readonly property real size: area.visibleArea.heightRatio
    readonly property bool held: finger.active // the list must not follow the finger then

    objectName: area.objectName + "ScrollBar"
    anchors {
        top: area.top
        right: area.right
        bottom: area.bottom
        bottomMargin: bar.bottomMargin
    }
    width: 5
    // Not for a rounding of the rows' heights.
    visible: area.contentHeight + area.bottomMargin - area.height > 4
    Accessible.ignored: true // the list itself says how long it is, and takes the keys

    Rectangle {
        anchors.fill: parent
        color: bar.track
    }
    Rectangle {
        objectName: bar.area.objectName + "ScrollThumb"
        readonly property real least: 12
        readonly property real room: bar.height - height
        y: Math.max(0, Math.min(room, bar.size < 1 ? bar.position / (1 - bar.size) * room : 0))
        width: parent.width
        height: Math.max(least, bar.size * bar.height)
        color: bar.thumb
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
        const range = area.contentHeight + area.bottomMargin - area.height
        area.contentY = area.originY + Math.max(0, Math.min(1, y / height)) * range
    }
}
