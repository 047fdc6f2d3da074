import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// Where the tester is looked for, and what is known about it.
ScreenFrame {
    id: page
    required property ConsoleSearchViewController screen
    framed: screen

    objectName: "consoleSearchView"

    LabelView {
        x: 20
        y: 60
        width: 280
        height: 30
        elide: Text.ElideRight
        label: page.screen.label("lblTester")
    }
    LabelView {
        x: 20
        y: 98
        width: 280
        height: 24
        label: page.screen.label("lblState")
    }
    LabelView {
        x: 20
        y: 134
        width: 280
        height: 180
        wraps: true
        elide: Text.ElideRight
        label: page.screen.label("lblWhy")
    }
    ButtonView {
        x: 20
        y: 330
        width: 280
        height: 40
        titleAlignment: Text.AlignHCenter
        titleSize: 16
        frameDistance: 2 // clear of the picture's light edge
        button: page.screen.button("btnOpen")
    }
}
