pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// One row of a table: its cells, the lines between and around them, and what is wrong with it.
Item {
    id: row
    required property int index
    required property var texts
    required property string words
    required property double rowHeight
    required property string mark
    required property bool struck
    required property Table table
    required property bool atKeyboard
    property color ground: Colors.clear // one that hides what lies behind is quicker to draw while it is scrolled
    readonly property var last: table.columns[table.columns.length - 1]
    // Of the place that the mark has for itself: the whole last column where that is blank, a part of it otherwise.
    readonly property real markWidth: {
        if (mark === "")
            return 0
        return texts[texts.length - 1].trim() === "" ? last.width : Math.min(rowMark.implicitWidth, last.width / 2)
    }

    component Line: Rectangle {
        id: line
        property bool upright: false
        width: upright ? 1 : row.width
        height: upright ? row.height : 1
        color: Colors.tableLine
        transform: Scale { // one point is drawn in whole pixels
            xScale: line.upright ? StageMetrics.line : 1
            yScale: line.upright ? 1 : StageMetrics.line
        }
    }

    height: rowHeight
    // Only a row that can be chosen says that it can be pressed.
    Component.onCompleted: {
        if (table.choosable)
            Accessible.pressAction.connect(() => row.table.choose(row.index))
    }
    Accessible.role: Accessible.Row
    Accessible.name: words
    Accessible.ignored: !visible || !enabled // behind another screen, too
    Accessible.focusable: true
    Accessible.focused: atKeyboard

    Rectangle {
        objectName: "rowGround"
        anchors.fill: parent
        visible: row.mark !== "" || row.ground.a > 0
        color: row.mark !== "" ? Colors.markedRow : row.ground
    }
    Repeater {
        model: row.table.headerColumns
        delegate: Rectangle {
            required property var modelData
            x: modelData.x
            width: modelData.width
            height: row.height
            color: Colors.header
        }
    }
    Rectangle {
        objectName: "keyboardRow"
        anchors.fill: parent
        visible: row.atKeyboard
        color: Colors.keyboardRow
    }
    Repeater {
        model: row.table.columns
        delegate: Text {
            required property int index
            required property var modelData
            objectName: "column" + (index + 1)
            // What gives way to the mark stays in the middle where it has room.
            readonly property real onRight: index + 1 === row.texts.length ? row.markWidth : 0
            readonly property real onLeft: implicitWidth <= modelData.width - 2 * onRight ? onRight : 0
            x: modelData.x + onLeft
            width: modelData.width - onLeft - onRight
            height: row.height
            text: row.texts[index]
            textFormat: Text.PlainText
            // A word that is wider than its column is drawn smaller, and broken only where that does not help.
            wrapMode: row.table.fitsUnbroken(text, width, minimumPixelSize) ? Text.WordWrap : Text.WrapAtWordBoundaryOrAnywhere
            elide: Text.ElideRight // at the least size, too
            horizontalAlignment: modelData.alignment
            verticalAlignment: Text.AlignVCenter
            font.family: "helvetica"
            font.pixelSize: modelData.fontSize
            font.strikeout: row.struck
            // A long text is drawn smaller rather than cut.
            fontSizeMode: Text.Fit
            minimumPixelSize: modelData.fontSize / 2
            color: modelData.asHeader ? Colors.textOnDark : Colors.ink
            Accessible.ignored: true
        }
    }
    Text { // at the end of the last column
        id: rowMark
        objectName: "rowMark"
        x: row.last.x + row.last.width - width
        width: row.markWidth
        height: row.height
        leftPadding: 2
        rightPadding: 7 // clear of the scroll bar
        visible: row.mark !== ""
        text: row.mark
        textFormat: Text.PlainText
        wrapMode: Text.WordWrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.family: "helvetica"
        font.pixelSize: 8
        font.bold: true
        fontSizeMode: Text.Fit
        minimumPixelSize: 4
        color: Colors.mark
        Accessible.ignored: true
    }
    Repeater {
        model: row.table.columns.length - 1
        delegate: Line {
            required property int index
            readonly property var column: row.table.columns[index]
            x: column.x + column.width
            visible: row.table.columns[index + 1].x === x + 1
            upright: true
        }
    }
    Line {
        visible: row.table.lines !== Table.Below
    }
    Line {
        visible: row.table.lines !== Table.Shared || row.index === row.table.rows.count - 1
        y: row.height - StageMetrics.line
    }
}
