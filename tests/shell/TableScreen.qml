import QtQuick
import Kestrix.Ui

FocusScope {
    id: page
    required property Screen screen

    Rectangle {
        anchors.fill: parent
        color: Colors.paper
    }
    TableHeader {
        y: 40
        width: 320
        height: 25
        table: page.screen.table("table")
    }
    TableView {
        y: 65
        width: 320
        height: 200
        focus: true
        table: page.screen.table("table")
        title: "A table"
    }
}
