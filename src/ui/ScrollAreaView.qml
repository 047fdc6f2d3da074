import QtQuick
import Kestrix.Ui

// Draws a ScrollArea around what is given to it: scrolled by finger, wheel, scroll bar and keys.
Flickable {
    id: view
    required property ScrollArea area

    objectName: area.objectName
    visible: !area.hidden
    contentWidth: width
    contentHeight: area.contentHeight
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    interactive: !bar.held
    activeFocusOnTab: true
    Accessible.role: Accessible.Pane
    Accessible.name: area.accessibleName
    Accessible.ignored: !visible || !enabled
    Accessible.focusable: true
    Keys.onPressed: event => event.accepted = area.pressKey(event.key, event.modifiers, event.isAutoRepeat)
    onContentYChanged: tell()
    onHeightChanged: tell()
    Component.onCompleted: {
        scroll()
        complete = true
        tell()
    }

    property bool complete: false

    function scroll() {
        contentY = Math.max(0, Math.min(area.position, contentHeight - height))
    }

    function tell() {
        if (complete)
            area.setSeen(contentY, height)
    }

    Connections {
        target: view.area
        function onScrollAsked() {
            view.scroll()
        }
    }
    ScrollBar {
        id: bar
        parent: view
        area: view
        track: Colors.scrollTrackOnDark
        thumb: Colors.panelEdge
    }
    FocusFrame {
        parent: view
        z: 1 // in front of the scroll bar
    }
}
