import QtQuick
import Kestrix.Ui
import Kestrix.History

// The measurements of one test record.
ScreenFrame {
    id: page
    required property HistoryViewController screen
    framed: screen
    menu: screen.menu
    lineY: 43

    objectName: "historyView"
    toolbarItems: ButtonView {
        x: 274
        width: 44
        height: 43 // above the toolbar's line
        pictureWidth: 30
        pictureHeight: 30
        button: page.screen.button("btnShare")
    }

    NinePatch { // its strip lies behind the titles of the columns
        y: -1
        width: 320
        height: parent.height + 1
        name: "background.png"
        topBorder: 40
        bottomBorder: 0
    }
    TableHeader {
        width: 320
        height: 30
        divided: true
        table: page.screen.table("tableView")
    }
    TableView {
        y: 29 // the first row's upper line closes the titles
        width: 320
        height: parent.height - y
        table: page.screen.table("tableView")
        ground: Colors.picturePaper
        rowName: "historyRow"
        title: qsTr("Measurements of the test record: %1").arg(count)
    }
}
