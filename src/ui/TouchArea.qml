import QtQuick

// What is pressed by any finger, also while others lie elsewhere on the screen, and by the mouse.
Item {
    id: area
    property bool actsOnLanding: true // acts when the finger comes down, not when it is lifted inside
    property real margin: 0       // how far it is sensitive beyond its edges
    readonly property bool held: landing.active || lifting.pressed
    readonly property bool hovered: hover.hovered

    signal pressed

    // Grabs nothing, so that what it does may take the area away at once.
    PointHandler {
        id: landing
        enabled: area.actsOnLanding
        acceptedButtons: Qt.LeftButton
        margin: area.margin
        onActiveChanged: if (active) area.pressed()
    }
    TapHandler {
        id: lifting
        enabled: !area.actsOnLanding
        gesturePolicy: TapHandler.ReleaseWithinBounds
        margin: area.margin
        acceptedButtons: Qt.LeftButton
        longPressThreshold: 86400 // however long it was held
        onTapped: area.pressed()
    }
    HoverHandler {
        id: hover
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad | PointerDevice.Stylus
    }
}
