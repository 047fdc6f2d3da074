pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// Draws a menu over the screen that it is shown in. That screen shrinks as far as `progress` says, and must be disabled
// beneath the menu.
FocusScope {
    id: view
    required property MBButtonMenuViewController menu
    property real progress: 0   // 1: risen
    property bool rising: false // where it is or moves to
    readonly property bool moves: movement.running

    objectName: "buttonMenu"
    visible: menu.onScreen
    enabled: menu.rising && !movement.running // nothing is pressed while it moves
    focus: visible // so that keys end here even while none of its buttons has them
    onEnabledChanged: if (enabled) forceActiveFocus()
    Keys.onPressed: event => event.accepted = menu.pressKey(event.key, event.modifiers, event.isAutoRepeat)
    Component.onCompleted: {
        follow()
        if (enabled) // it may have risen at once
            forceActiveFocus()
    }

    function follow() {
        if (menu.rising === rising)
            return
        rising = menu.rising
        movement.stop()
        if (menu.duration === 0) {
            progress = rising ? 1 : 0
        } else {
            movement.to = rising ? 1 : 0
            movement.start()
        }
    }

    Connections {
        target: view.menu
        function onMovementChanged() {
            view.follow()
        }
    }
    NumberAnimation {
        id: movement
        target: view
        property: "progress"
        duration: view.menu.duration
        easing.type: Easing.InOutQuad
        onFinished: view.menu.movementDone()
    }
    MouseArea { // nothing behind is touched
        anchors.fill: parent
        preventStealing: true
    }
    Rectangle {
        objectName: "modalView"
        anchors.fill: parent
        color: Colors.stage
        opacity: 0.7 * view.progress
    }
    Item {
        id: panel
        objectName: "buttonView"
        y: view.height - height * view.progress
        width: view.width
        height: view.menu.panel.height

        Picture {
            anchors.fill: parent
            name: view.menu.backgroundImage
        }
        Flickable {
            id: wrapper
            objectName: "buttonWrapper"
            anchors.fill: parent
            contentHeight: view.menu.contentHeight
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: true

            Repeater {
                model: view.menu.buttons
                delegate: Rectangle {
                    id: button
                    required property var modelData
                    readonly property bool current: modelData.current
                    objectName: (current ? "menuButton" : "earlierMenuButton") + modelData.title
                    x: modelData.frame.x
                    y: modelData.frame.y
                    width: modelData.frame.width
                    height: modelData.frame.height
                    color: modelData.background
                    activeFocusOnTab: current
                    onActiveFocusChanged: {
                        if (activeFocus)
                            wrapper.contentY = Math.max(y + height - wrapper.height, Math.min(y, wrapper.contentY))
                    }
                    Accessible.role: Accessible.Button
                    Accessible.name: modelData.title
                    Accessible.focusable: true
                    Accessible.ignored: !current || !visible || !enabled
                    Accessible.onPressAction: if (enabled) view.menu.buttonTapped(modelData.title)
                    Keys.onPressed: event => {
                        event.accepted = KeyRules.presses(event.key, event.modifiers)
                        if (event.accepted && !event.isAutoRepeat)
                            view.menu.buttonTapped(modelData.title)
                    }

                    Rectangle { // between it and the one above
                        width: parent.width
                        height: StageMetrics.line
                        color: Colors.panelEdge
                        opacity: 0.4
                        visible: button.y > 0
                    }
                    Text {
                        anchors {
                            fill: parent
                            leftMargin: 8
                            rightMargin: 8
                        }
                        text: button.modelData.title
                        textFormat: Text.PlainText
                        elide: Text.ElideRight
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                        color: touch.held ? Colors.heldTitle : button.modelData.titleColor
                        font.family: "Arial"
                        font.pixelSize: 16
                        Accessible.ignored: true
                    }
                    TouchArea {
                        id: touch
                        anchors.fill: parent
                        actsOnLanding: false
                        onPressed: view.menu.buttonTapped(button.modelData.title)
                    }
                    FocusFrame {
                        thickness: 3 // it shrinks with the screen, and no longer stands on whole pixels
                        outer: Colors.focusDark
                        inner: Colors.focusLight
                    }
                }
            }
        }
    }
}
