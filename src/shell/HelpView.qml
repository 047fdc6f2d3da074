import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// The ways to the screens that help.
ScreenFrame {
    id: page
    required property HelpViewController screen
    framed: screen
    backAt: Qt.point(10, 10)

    component Way: ButtonView {
        x: 20
        width: 280
        height: 40
        titleInset: 12
        titleSize: 16
        frameDistance: 2 // clear of the picture's light edge

        Picture {
            x: 250
            y: 8
            width: 20
            height: 25
            name: "orvo_cell_jian.png"
        }
    }

    objectName: "helpView"

    Way {
        y: 54
        button: page.screen.button("btnBluetooth")
    }
    Way {
        y: 134
        button: page.screen.button("btnSafety")
    }
}
