import QtQuick
import Kestrix.Ui
import Kestrix.Live

// The bar on top: the menu on the left, saving and the saved records on the right.
Item {
    id: toolbar
    required property MainViewController controller

    Picture {
        anchors.fill: parent
        name: "orvo_contrast_tab.png"
    }
    Text {
        anchors.centerIn: parent
        text: "Kestrix"
        color: Colors.textOnDark
        font.family: "Arial"
        font.pixelSize: 18
        Accessible.role: Accessible.Heading
        Accessible.ignored: !visible || !enabled
        Accessible.name: text
    }
    ButtonView {
        x: 2
        width: 44
        height: 44
        pictureWidth: 30
        pictureHeight: 30
        button: toolbar.controller.Leftbtn
    }
    ButtonView {
        x: 274
        width: 44
        height: 44
        pictureWidth: 30
        pictureHeight: 30
        button: toolbar.controller.Rightbtn
    }
}
