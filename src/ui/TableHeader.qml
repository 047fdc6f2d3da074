pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// What stands above the columns of a table.
Item {
    id: header
    required property Table table

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
}
