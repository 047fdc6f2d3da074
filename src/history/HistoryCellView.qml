import QtQuick
import Kestrix.Ui
import Kestrix.History

// One measurement of a test record.
ScreenFrame {
    id: page
    required property HistoryCellViewController screen
    framed: screen
    titleWidth: 60

    objectName: "historyCellView"

    Item { // only the paper of the picture
        anchors.fill: parent
        clip: true

        NinePatch {
            y: -40
            width: 320
            height: parent.height + 40
            name: "background.png"
            topBorder: 40
            bottomBorder: 0
        }
    }
    TableView {
        width: 320
        height: parent.height
        table: page.screen.table("tableView")
        rowName: "historyCellRow"
        title: qsTr("The measurement")
    }
}
