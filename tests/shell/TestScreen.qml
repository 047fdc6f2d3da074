import QtQuick
import Kestrix.Ui

// A presented screen with two buttons.
FocusScope {
    id: page
    required property Screen screen

    objectName: "testScreen"

    Rectangle { // wider than the stage
        anchors {
            fill: parent
            leftMargin: -40
            rightMargin: -40
        }
        color: "#455e95"
    }
    LabelView {
        label: page.screen.label("lblTitle")
        y: 20
        width: 320
        height: 30
    }
    ButtonView {
        button: page.screen.button("btnFirst")
        x: 20
        y: 100
        width: 100
        height: 40
        focus: true
    }
    ButtonView {
        button: page.screen.button("btnSecond")
        x: 20
        y: 200
        width: 100
        height: 40
    }
}
