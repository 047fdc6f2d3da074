import QtQuick
import Kestrix.Ui
import Kestrix.Live

// The home screen.
FocusScope {
    id: page
    required property MainViewController screen
    property real coveredBelow: 0 // of the list, by a notice

    objectName: "mainView"
    focus: true
    Accessible.role: Accessible.Pane
    Accessible.ignored: !visible || !enabled
    Accessible.name: qsTr("Live display")
    Keys.onPressed: event => event.accepted = screen.keys.press(event.key, event.modifiers, event.isAutoRepeat)

    Connections {
        target: page.screen
        function onReadingAsked() {
            meter.reading.focus = false // asked again, it is said again
            meter.reading.forceActiveFocus(Qt.ShortcutFocusReason)
        }
    }

    Picture {
        objectName: "displayBackground"
        y: 44
        width: 320
        height: 530
        name: "orvo_home_bg.png"
    }
    NinePatch {
        objectName: "displayPanel"
        x: 10
        y: 45
        width: 300
        height: 130
        name: "orvo_home_blue_bg.9.png"
        leftBorder: 12
        topBorder: 12
    }
    Toolbar {
        objectName: "toolbar"
        width: 320
        height: 44
        controller: page.screen
    }
    Picture {
        objectName: "toolbarLine"
        y: 44
        width: 320
        height: 2
        name: "orvo_all_line.png"
    }
    MeterView {
        id: meter
        width: 320
        height: 175
        controller: page.screen
    }
    NinePatch {
        objectName: "listBackground"
        y: 175
        width: 320
        height: page.height - 175
        name: "background.png"
        topBorder: 40
        bottomBorder: 0
    }
    FunctionTitles {
        y: 175
        width: 320
        height: 31
        controller: page.screen
    }
    TableHeader {
        y: 206
        width: 320
        height: 25
        table: page.screen.tableView
    }
    TableView {
        y: 231
        width: 320
        height: page.height - 56 - y
        bottomMargin: 4 + page.coveredBelow // the bottom bar covers as much of the list
        table: page.screen.tableView
        rowName: "sessionRow"
        title: qsTr("Measurements of this session: %1").arg(count)
    }
    BottomBar {
        objectName: "bottomBar"
        y: page.height - 60
        width: 320
        height: 60
        controller: page.screen
    }
}
