pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// The presented screens, each sliding up in front of those before it, and down again when it is dismissed.
// While one slides, no input reaches any of them.
Item {
    id: modals
    required property ScreenStack stack
    readonly property bool sliding: slides > 0
    property int slides: 0

    Repeater {
        model: modals.stack
        delegate: FocusScope {
            id: slide
            required property Screen screen
            required property url view
            required property bool animated
            required property bool leaving
            required property int index
            property real progress: 0 // 1: in place

            width: modals.width
            height: modals.height
            y: height * (1 - progress)
            visible: !screen.covered
            enabled: !modals.sliding && index === modals.stack.count - 1
            focus: true
            onEnabledChanged: if (enabled) forceActiveFocus()

            MouseArea { // nothing behind is touched
                anchors.fill: parent
                preventStealing: true
            }
            Loader {
                anchors.fill: parent
                focus: true
                onLoaded: item.focus = true
                Component.onCompleted: setSource(slide.view, {"screen": slide.screen})
            }
            NumberAnimation {
                id: slideIn
                target: slide
                property: "progress"
                to: 1
                duration: modals.stack.slideDuration
                easing.type: Easing.OutCubic
                onRunningChanged: slide.countSlide(running)
                onFinished: modals.stack.slidIn(slide.screen)
            }
            NumberAnimation {
                id: slideOut
                target: slide
                property: "progress"
                to: 0
                duration: modals.stack.slideDuration
                easing.type: Easing.InCubic
                onRunningChanged: slide.countSlide(running)
                onFinished: modals.stack.slidOut(slide.screen)
            }
            onLeavingChanged: {
                slideIn.stop() // it may be dismissed before it has come
                slideOut.start()
            }
            Component.onCompleted: {
                if (animated)
                    slideIn.start()
                else
                    progress = 1
                forceActiveFocus()
            }
            Component.onDestruction: {
                slideIn.stop()
                slideOut.stop()
            }

            function countSlide(begins: bool) {
                modals.slides += begins ? 1 : -1
            }
        }
    }
}
