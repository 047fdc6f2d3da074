import QtQuick
import Kestrix.Ui

// What every presented screen stands in: the toolbar with its title and its back button, the ground, and below the
// toolbar the content. The content's first point is the one below the toolbar's line.
FocusScope {
    id: frame
    required property FramedScreen framed
    property string ground: "orvo_home_bg.png"
    property MBButtonMenuViewController menu: null // that rises over this screen
    readonly property MBButtonMenuView menuView: risen.item as MBButtonMenuView
    property real lineY: 44         // of the toolbar's line, two points high
    property point backAt: Qt.point(9, 7) // where the picture of the back button begins
    property real titleWidth: 0     // of the title's label; 0: as wide as the toolbar lets it
    default property alias content: below.data
    property alias toolbarItems: toolbar.data // beside title and back button

    objectName: "screenFrame"
    Accessible.role: Accessible.Pane
    Accessible.name: framed.titleLabel.text.trim() === "" ? framed.name : framed.titleLabel.text
    Accessible.ignored: !visible || !enabled
    scale: menuView === null ? 1 : 1 - 0.1 * menuView.progress
    Keys.onPressed: event =>
        event.accepted = menuView !== null && menuView.moves // no key acts meanwhile
            || frame.framed.pressKey(event.key, event.modifiers, event.isAutoRepeat)

    Picture {
        anchors.fill: parent
        name: frame.ground
    }
    Item {
        id: toolbar
        objectName: "screenToolbar"
        enabled: risen.hasGone
        width: frame.width
        height: 44

        Picture {
            anchors.fill: parent
            name: "orvo_contrast_tab.png"
        }
        ButtonView {
            x: frame.backAt.x - 7
            y: 2 * (frame.backAt.y - 7)
            width: 44
            height: frame.lineY - y // so that the frame of the keyboard is seen whole
            pictureWidth: 30
            pictureHeight: 30
            button: frame.framed.backButton
        }
        LabelView {
            readonly property real room: frame.width - 96
            x: (frame.width - width) / 2
            width: frame.titleWidth > 0 ? frame.titleWidth : room
            textWidth: room
            height: 44
            elide: Text.ElideRight
            label: frame.framed.titleLabel
            Accessible.role: Accessible.Heading
        }
    }
    Item {
        id: below
        objectName: "screenContent"
        enabled: risen.hasGone
        y: frame.lineY + 2
        width: frame.width
        height: frame.height - y
    }
    Picture {
        y: frame.lineY
        width: frame.width
        height: 2
        name: "orvo_all_line.png"
    }
    Lazily {
        id: risen
        readonly property bool hasGone: frame.menu === null || !frame.menu.onScreen
        anchors.fill: parent
        view: "MBButtonMenuView"
        given: ({"menu": frame.menu})
        wanted: !hasGone
    }
}
