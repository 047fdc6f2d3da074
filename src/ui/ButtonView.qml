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
    property int titleAlignment: Text.AlignLeft
    property int titleSize: 14
    property bool titleShrinks: false       // one that is too wide is drawn smaller, and at last ends with three dots
    // What the mouse is told where the button shows no words.
    property string hint: button.title === "" ? button.accessibleName : ""
    readonly property bool held: touch.held
    readonly property bool rested: touch.hovered && !touch.held

    objectName: button.objectName
    visible: !button.hidden
    activeFocusOnTab: true
    // Otherwise the keyboard would stay at something that cannot be seen. Behind another screen it keeps its place.
    onVisibleChanged: if (button !== null && button.hidden) focus = false // none yet: it is being made
    Accessible.role: Accessible.Button
    Accessible.name: button.accessibleName || button.title
    Accessible.focusable: true
    Accessible.ignored: !visible || !enabled // behind another screen, too
    Accessible.onPressAction: if (visible && enabled) button.press()
    Keys.onPressed: event => event.accepted = button.pressKey(event.key, event.modifiers, event.isAutoRepeat)

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
        color: Colors.textOnDark
        font.family: "helvetica"
        font.pixelSize: view.titleSize
        fontSizeMode: view.titleShrinks ? Text.HorizontalFit : Text.FixedSize
        minimumPixelSize: 8
        elide: view.titleShrinks ? Text.ElideRight : Text.ElideNone
        horizontalAlignment: view.titleAlignment
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    Lazily { // under a mouse only
        anchors.fill: parent
        view: "ButtonHover"
        given: ({"target": view})
        wanted: touch.hovered
    }
    TouchArea {
        id: touch
        anchors.fill: parent
        margin: view.touchMargin
        actsOnLanding: view.button.actsOnTouchDown
        onPressed: view.button.press()
    }
    FocusFrame {
        anchors.margins: -view.frameDistance
    }
}
