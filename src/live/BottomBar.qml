import QtQuick
import Kestrix.Ui
import Kestrix.Live

// The bar at the bottom with the record button.
Item {
    id: bar
    required property MainViewController controller

    NinePatch {
        anchors.fill: parent
        name: "orvo_home_tab_down_bg.9.png"
        leftBorder: 8
        topBorder: 8
        bottomBorder: 0
    }
    ButtonView {
        button: bar.controller.btnRecord
        x: 108
        y: 2
        width: 102
        height: 56
        hint: qsTr("Record (Space)")
        pressedImage: "orvo_home_button_record_pressed.png"
    }
}
