pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// What stands above the columns of a table.
Item {
    id: header
    required property Table table
    property bool divided: false // by lines, as the columns below it

    Rectangle { // one ground, so that no gap shows between the columns
        anchors.fill: parent
        color: Colors.header
    }
    Repeater {
        model: header.table.columns
        delegate: LabelView {
            required property int index
            required property var modelData
            label: header.table.header(index)
            x: modelData.x
            width: modelData.width
            height: header.height
            elide: Text.ElideRight // never over the next column; a screen reader says all of it
        }
    }
    Repeater {
        model: header.divided ? header.table.columns.length - 1 : 0
        delegate: Rectangle {
            required property int index
            readonly property var column: header.table.columns[index]
            objectName: "headerLine" + index
            x: column.x + column.width
            width: StageMetrics.line
            height: header.height
            color: Colors.tableLine
        }
    }
}
