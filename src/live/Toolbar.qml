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
    ButtonView {
        x: 2
        width: 44
        height: 44
        pictureWidth: 30
        pictureHeight: 30
        button: toolbar.controller.Leftbtn
    }
    ButtonView { // the tester: its name and its state
        x: 52
        width: 216
        height: 44
        button: toolbar.controller.btnTester

        LabelView {
            id: tester
            x: 14
            y: 4
            width: 188
            height: 22
            label: toolbar.controller.lblTester
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Picture { // something opens below
            x: tester.x + (tester.width + tester.paintedWidth) / 2 + 2
            y: 9
            width: 12
            height: 15
            rotation: 90
            name: "orvo_cell_jian.png"
        }
        LabelView {
            y: 25
            width: parent.width
            height: 14
            label: toolbar.controller.lblTesterState
            elide: Text.ElideRight
            Accessible.ignored: true
        }
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
