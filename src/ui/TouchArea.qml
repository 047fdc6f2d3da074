import QtQuick

// What is pressed by any finger, also while others lie elsewhere on the screen, and by the mouse. What lies
// behind it gets nothing of the press.
Item {
    id: area
    property real margin: 0 // how far it is sensitive beyond its edges
    readonly property bool held: press.pressed
    readonly property bool hovered: hover.hovered

    signal landed // the finger came down
    signal lifted // and was taken away while it was still inside

    TapHandler {
        id: press
        gesturePolicy: TapHandler.ReleaseWithinBounds
        margin: area.margin
        acceptedButtons: Qt.LeftButton
        longPressThreshold: 86400 // however long it was held
        onPressedChanged: if (pressed) area.landed()
        onTapped: area.lifted()
    }
    HoverHandler {
        id: hover
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad | PointerDevice.Stylus
    }
}
