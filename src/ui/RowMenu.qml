import QtQuick
import Kestrix.Ui

// What can be done with one row of a table, beside the place where it was asked for. Any press elsewhere
// closes it.
Item {
    id: menu
    required property Item list
    property int row: -1

    signal chosen(row: int)

    objectName: list.objectName + "RowMenu"
    anchors.fill: parent
    visible: row >= 0

    function open(which: int, item: Item, at: point) {
        const spot = item.mapToItem(menu, at.x, at.y)
        entry.x = Math.max(0, Math.min(width - entry.width, spot.x))
        entry.y = Math.max(0, Math.min(height - entry.height, spot.y - entry.height))
        row = which
    }
    // True, for who asks by a key.
    function close(): bool {
        row = -1
        return true
    }
    function choose() {
        chosen(row)
        close()
    }

    TouchArea {
        anchors.fill: parent
        onPressed: menu.close()
    }
    Rectangle {
        id: entry
        objectName: menu.list.objectName + "CopyRow"
        width: 76
        height: 26
        color: held.held ? Colors.header : Colors.tip
        border {
            width: StageMetrics.line
            color: Colors.header
        }
        Accessible.role: Accessible.MenuItem
        Accessible.ignored: !visible || !enabled
        Accessible.name: words.text
        Accessible.onPressAction: menu.choose()

        Text {
            id: words
            anchors.centerIn: parent
            text: qsTr("Copy this row")
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
            onPressed: menu.choose()
        }
    }
}
