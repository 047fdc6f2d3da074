import QtQuick
import Kestrix.Ui

// A button that is a word on a panel: of an alert, or of a notice.
Rectangle {
    id: button
    required property string title

    signal pressed

    implicitWidth: Math.ceil(words.implicitWidth) + 24 // on whole points, or its frame would be blurred
    implicitHeight: 36
    color: touch.pressed ? Colors.header : Colors.clear
    activeFocusOnTab: true
    onVisibleChanged: if (!visible) focus = false
    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.focusable: true
    Accessible.ignored: !visible || !enabled
    Accessible.onPressAction: if (enabled) pressed()
    Keys.onPressed: event => {
        event.accepted = KeyRules.presses(event.key, event.modifiers)
        if (event.accepted && !event.isAutoRepeat)
            button.pressed()
    }

    Text {
        id: words
        anchors.centerIn: parent
        text: button.title
        textFormat: Text.PlainText
        color: Colors.focusLight
        font.family: "Arial"
        font.pixelSize: 15
        font.bold: true
        Accessible.ignored: true
    }
    TapHandler {
        id: touch
        gesturePolicy: TapHandler.ReleaseWithinBounds
        longPressThreshold: 86400 // however long it was held
        onTapped: button.pressed()
    }
    FocusFrame {}
}
