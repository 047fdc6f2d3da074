pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// The rows of a table: scrolled by finger, wheel, scroll bar and keys. While it has the keyboard, one row is
// marked as the one that keys move from and that is copied.
ListView {
    id: list
    required property Table table
    property string rowName: "row" // with its number it is the name of a row
    property string title: ""      // for screen readers
    property color ground: Colors.clear // of its rows
    property real frameLeft: 0 // how far its focus frame keeps off its left edge
    property color emptyColor: Colors.ink // of what stands in place of the rows

    objectName: table.objectName
    visible: !table.hidden
    model: table.rows
    delegate: TableRowView {
        id: rowView
        objectName: list.rowName + index
        width: list.width
        ground: list.ground
        table: list.table
        atKeyboard: list.activeFocus && list.table.currentRow === index

        TapHandler {
            enabled: list.table.choosable
            onTapped: list.table.choose(rowView.index)
        }
        TapHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad | PointerDevice.Stylus
            acceptedButtons: Qt.RightButton
            onTapped: point => list.openMenu(rowView.index, rowView, point.position)
        }
        TapHandler {
            id: longTouch
            acceptedDevices: PointerDevice.TouchScreen
            onLongPressed: list.openMenu(rowView.index, rowView, longTouch.point.position)
        }
    }
    section.property: table.grouped ? "group" : ""
    section.delegate: groups.view
    reuseItems: true
    // A row beyond what is seen would be made piece by piece in the turns to come; a screen that goes meanwhile would
    // leave it unfinished. One that comes into sight is made at once, mostly out of one that went.
    cacheBuffer: 0
    // Who looks at the last row goes on seeing it when the list's end is covered, and when it no longer is.
    property real knownMargin: -1 // none before all is made
    Component.onCompleted: knownMargin = bottomMargin
    onBottomMarginChanged: {
        if (knownMargin < 0)
            return
        const atEnd = contentHeight + knownMargin - height < contentY - originY + 1
        knownMargin = bottomMargin
        if (atEnd)
            showLastRow()
    }
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    interactive: !bar.held
    activeFocusOnTab: true
    keyNavigationEnabled: false
    // The list itself has the keyboard when it comes, and the row that a key moved to afterwards: a screen reader says the
    // one and the other.
    currentIndex: table.currentRow
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.Table
    Accessible.name: title
    Accessible.ignored: !visible || !enabled // behind another screen, too
    Accessible.focusable: true
    Keys.onPressed: event => {
        const row = itemAtIndex(table.currentRow)
        const seen = height - bottomMargin
        const above = row === null ? 0 : contentY - row.y
        const below = row === null ? 0 : row.y + row.height - contentY - seen
        event.accepted = table.pressKey(event.key, event.modifiers, event.isAutoRepeat, seen, above, below)
    }

    function openMenu(row: int, item: Item, at: point) {
        table.openMenu(row)
        const shown = menu.item as RowMenu
        shown.place(item, at)
    }

    function showLastRow() {
        positionViewAtEnd() // makes the rows there, which tells the height of all
        contentY = Math.max(originY, originY + contentHeight + bottomMargin - height)
    }

    // The whole row if it fits, and its beginning if it does not.
    function show(row: int) {
        positionViewAtIndex(row, ListView.Contain)
        const item = itemAtIndex(row)
        if (item === null)
            return
        const below = item.y + item.height - (contentY + height - bottomMargin)
        if (below > 0)
            contentY += Math.min(below, item.y - contentY)
    }

    Connections {
        target: list.table
        function onCurrentRowChanged() {
            if (list.table.currentRow >= 0)
                list.show(list.table.currentRow)
        }
        function onScrollAsked(by: real) {
            list.contentY += by
        }
        function onLastRowAsked() {
            list.showLastRow()
        }
    }
    Text {
        objectName: list.objectName + "EmptyText"
        parent: list
        anchors {
            fill: parent
            margins: 24
            bottomMargin: 24 + list.bottomMargin
        }
        visible: list.count === 0 && text !== ""
        text: list.table.emptyText
        textFormat: Text.PlainText
        wrapMode: Text.WordWrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.family: "helvetica"
        font.pixelSize: 14
        color: list.emptyColor
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        Accessible.ignored: !visible || !enabled
    }
    TableGroups {
        id: groups
    }
    ScrollBar {
        id: bar
        parent: list
        area: list
    }
    FocusFrame {
        parent: list
        anchors.bottomMargin: list.bottomMargin
        anchors.leftMargin: list.frameLeft
    }
    Lazily {
        id: menu
        parent: list.parent // over what stands beside the list, too
        anchors.fill: parent
        z: 1
        view: "RowMenu"
        given: ({"list": list, "table": list.table})
        wanted: list.table.menuRow >= 0
    }
}
