import QtQuick
import Kestrix.Ui

// Draws a Button, and presses it: by mouse, finger, key or screen reader. Only the keyboard gives it the focus.
FocusScope {
    id: view
    required property Button button
    property string pressedImage: ""      // in place of the button's own while it is held
    property real pictureWidth: width     // of the image, which stands in the middle
    property real pictureHeight: height
    property real touchMargin: 0          // how far the sensitive area goes beyond the item
    property real frameDistance: 0        // of the focus frame
    property int titleInset: 0
    property int titleSize: 14
    readonly property bool held: touch.pressed && touch.containsMouse || landing.active

    objectName: button.objectName
    visible: !button.hidden
    activeFocusOnTab: true
    // Otherwise the keyboard would stay at something that cannot be seen. Behind another screen it keeps its place.
    onVisibleChanged: if (button.hidden) focus = false
    Accessible.role: Accessible.Button
    Accessible.name: button.accessibleName || button.title
    Accessible.focusable: true
    Accessible.ignored: !visible || !enabled // behind another screen, too
    Accessible.onPressAction: if (visible && enabled) button.press()
    Keys.onPressed: event => {
        const presses = event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter
        if (!presses)
            return
        event.accepted = true
        if (!event.isAutoRepeat)
            view.button.press()
    }

    Picture {
        anchors.fill: parent
        name: view.button.backgroundImage
        visible: view.button.backgroundImage !== ""
        opacity: view.held ? 0.7 : 1
    }
    Picture {
        anchors.centerIn: parent
        width: view.pictureWidth
        height: view.pictureHeight
        name: view.held && view.pressedImage !== "" ? view.pressedImage : view.button.image
        opacity: view.held && view.pressedImage === "" ? 0.6 : 1
    }
    Text {
        anchors {
            fill: parent
            leftMargin: view.titleInset
        }
        visible: view.button.title !== ""
        text: view.button.title
        textFormat: Text.PlainText
        color: "white"
        font.family: "helvetica"
        font.pixelSize: view.titleSize
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    MouseArea {
        id: touch
        anchors {
            fill: parent
            margins: -view.touchMargin
        }
        enabled: !view.button.actsOnTouchDown // it would keep the press from the handler
        onClicked: view.button.press()
    }
    // Any finger, not only the first one on the screen, which alone makes mouse events.
    PointHandler {
        id: landing
        enabled: view.button.actsOnTouchDown
        acceptedButtons: Qt.LeftButton
        margin: view.touchMargin
        onActiveChanged: if (active) view.button.press()
    }
    FocusFrame {
        anchors.margins: -view.frameDistance
    }
}
