pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// What can be done with one row of a table, beside the place where it was asked for. Any press elsewhere
// closes it, and a button that is pressed then acts as always; so does Escape, wherever the keyboard is.
Item {
    id: menu
    required property ListView list
    required property Table table

    objectName: list.objectName + "RowMenu"
    visible: table.menuRow >= 0 && list.visible

    function place(item: Item, at: point) {
        const spot = item.mapToItem(menu, at.x, at.y)
        entry.x = Math.max(0, Math.min(width - entry.width, spot.x))
        entry.y = Math.max(0, Math.min(height - entry.height, spot.y - entry.height))
    }

    // Who opens it without a place gets it beside the middle of the row.
    function placeBesideRow() {
        const item = list.itemAtIndex(table.menuRow)
        if (item !== null)
            place(item, Qt.point(item.width / 2 - entry.width, 0))
    }

    Component.onCompleted: placeBesideRow()
    Connections {
        target: menu.table
        function onMenuRowChanged() {
            menu.placeBesideRow()
        }
    }
    TouchArea {
        anchors.fill: parent
        margin: 10000 // beyond what the menu's parent covers
        onPressed: menu.table.closeMenu()
    }
    Shortcut {
        sequences: ["Esc", "Back"]
        enabled: menu.visible && menu.enabled
        onActivated: menu.table.closeMenu()
        onActivatedAmbiguously: menu.table.closeMenu() // two tables may have theirs open
    }
    Rectangle {
        id: entry
        width: 76
        height: entries.height
        color: Colors.tip
        border {
            width: StageMetrics.line
            color: Colors.header
        }

        Column {
            id: entries

            Repeater {
                model: menu.table.menuEntries
                delegate: Rectangle {
                    id: choice
                    required property int index
                    required property string modelData
                    objectName: menu.list.objectName + (index === 0 ? "CopyRow" : "DeleteRow")
                    width: entry.width
                    height: 26
                    color: held.held ? Colors.header : Colors.clear
                    border {
                        width: StageMetrics.line
                        color: Colors.header
                    }
                    Accessible.role: Accessible.MenuItem
                    Accessible.ignored: !visible || !enabled
                    Accessible.name: modelData
                    Accessible.onPressAction: menu.table.chooseEntry(index)

                    Text {
                        anchors.centerIn: parent
                        text: choice.modelData
                        textFormat: Text.PlainText
                        color: Colors.textOnDark
                        font.family: "helvetica"
                        font.pixelSize: 10
                        Accessible.ignored: true
                    }
                    TouchArea {
                        id: held
                        anchors.fill: parent
                        actsOnLanding: false
                        onPressed: menu.table.chooseEntry(choice.index)
                    }
                }
            }
        }
    }
}
