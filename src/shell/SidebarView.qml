import QtQuick
import Kestrix.Ui
import Kestrix.Live
import Kestrix.Shell

// The content area over the side bars, which it uncovers by sliding aside.
FocusScope {
    id: view
    required property SidebarViewController container
    property real coveredBelow: 0 // of lists, by a notice
    property real translation: 0  // of the content area, in points to the right
    readonly property bool uncovers: translation !== 0 || slide.running

    objectName: "sideBars"
    onEnabledChanged: if (enabled) takeKeyboard()
    Keys.onPressed: event =>
        event.accepted = view.container.pressKey(event.key, event.modifiers, event.isAutoRepeat)

    // The keyboard goes with what can be used.
    function takeKeyboard() {
        if (bars.enabled)
            bars.forceActiveFocus()
        else
            content.forceActiveFocus()
    }

    Connections {
        target: view.container
        function onSlideBegan() {
            slide.stop()
            if (view.container.slideDuration === 0) {
                view.translation = view.container.target
            } else {
                slide.to = view.container.target
                slide.start()
            }
        }
    }
    NumberAnimation {
        id: slide
        target: view
        property: "translation"
        duration: view.container.slideDuration
        easing.type: Easing.InOutQuad
        onFinished: view.container.slid()
    }

    FocusScope {
        id: bars
        readonly property bool usable: view.container.userInteraction && view.container.sideBarShowing && view.uncovers
        objectName: "navBackView"
        anchors.fill: parent
        visible: view.uncovers
        enabled: usable
        focus: usable
        onEnabledChanged: if (view.enabled) view.takeKeyboard()

        SideBarLoader {
            view: "LeftSideBarView.qml"
            screen: view.container.leftSideBar
            uncovered: view.uncovers && !view.container.rightInFront
        }
        SideBarLoader {
            id: right
            view: "../Storage/RightSideBarView.qml"
            screen: view.container.rightSideBar
            uncovered: view.uncovers && view.container.rightInFront
        }
        Binding {
            target: right.item
            property: "coveredBelow"
            value: view.coveredBelow
            when: right.item !== null
        }
    }
    FocusScope {
        id: content
        objectName: "contentView"
        x: view.translation
        width: view.width
        height: view.height
        focus: !bars.usable

        SideShadow {
            x: -width
            height: parent.height
            visible: view.uncovers
            rotation: 180
        }
        SideShadow {
            x: parent.width
            height: parent.height
            visible: view.uncovers
        }
        MainView {
            width: 320
            height: parent.height
            screen: view.container.mainView
            coveredBelow: view.coveredBelow
            enabled: view.container.userInteraction && !view.container.tapCloses
            focus: true
        }
        Item { // what of the content can still be seen closes the side bars
            objectName: "contentTap"
            anchors.fill: parent
            visible: view.container.tapCloses
            enabled: visible && view.container.userInteraction
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("Back to the live display")
            Accessible.ignored: !visible || !enabled
            Accessible.onPressAction: if (enabled) view.container.tapOnContentView()

            TouchArea {
                anchors.fill: parent
                actsOnLanding: false
                onPressed: view.container.tapOnContentView()
            }
        }
    }
}
