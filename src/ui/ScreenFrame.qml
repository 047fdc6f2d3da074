import QtQuick
import Kestrix.Ui

// What every presented screen stands in: the toolbar with its title and its back button, the ground, and below the
// toolbar the content. The content's first point is the one below the toolbar's line.
FocusScope {
    id: frame
    required property FramedScreen framed
    property string ground: "orvo_home_bg.png"
    default property alias content: below.data

    objectName: "screenFrame"
    Accessible.role: Accessible.Pane
    Accessible.name: framed.titleLabel.text
    Accessible.ignored: !visible || !enabled
    Keys.onPressed: event =>
        event.accepted = frame.framed.pressKey(event.key, event.modifiers, event.isAutoRepeat)

    Picture {
        anchors.fill: parent
        name: frame.ground
    }
    Item {
        id: toolbar
        objectName: "screenToolbar"
        width: frame.width
        height: 44

        Picture {
            anchors.fill: parent
            name: "orvo_contrast_tab.png"
        }
        ButtonView {
            x: 2
            width: 44
            height: 44
            pictureWidth: 30
            pictureHeight: 30
            button: frame.framed.backButton
        }
        LabelView {
            x: 48
            width: frame.width - 96
            height: 44
            label: frame.framed.titleLabel
            Accessible.role: Accessible.Heading
        }
    }
    Item {
        id: below
        objectName: "screenContent"
        y: 46
        width: frame.width
        height: frame.height - y
    }
    Picture {
        y: 44
        width: frame.width
        height: 2
        name: "orvo_all_line.png"
    }
}
