import QtQuick
import Kestrix.Ui

// What no screen may be: dark on dark, unknown to screen readers, and with a place for the keyboard that nobody sees.
ScreenFrame {
    id: page
    required property FramedScreen screen
    framed: screen

    objectName: "badScreen"

    Rectangle {
        width: 320
        height: 100
        color: "#303030"
        Text {
            text: "Save"
            color: "#334455"
            font.pixelSize: 16
        }
    }
    ListView {
        objectName: "namelessTable"
        y: 120
        width: 320
        height: 100
        activeFocusOnTab: true
        Accessible.role: Accessible.Table
    }
}
