import QtQuick
import Kestrix.Ui

// A screen that is nothing but a table, drawn as every table of the application is.
Rectangle {
    id: page
    required property Screen screen

    color: Colors.paper

    TableView {
        anchors.fill: parent
        table: page.screen.table("rows")
    }
}
