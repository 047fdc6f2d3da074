pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Storage

// One test record in the list. Swiped to the left, it uncovers a button that deletes it.
Item {
    id: row
    required property int index
    required property var texts
    required property string words
    required property RightSideBarViewController screen
    required property Table table
    required property bool atKeyboard
    readonly property real deleteWidth: 80
    readonly property real dragged: drag.active ? drag.activeTranslation.x : 0
    property real aside: screen.swipedRow === index ? 1 : 0 // how far it stands aside, of all the way

    component Cell: Text {
        property int column
        width: 130
        leftPadding: 14 // clear of the arrow, and in the middle all the same
        rightPadding: 14
        text: row.texts[column]
        textFormat: Text.PlainText
        maximumLineCount: 1
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.family: "helvetica"
        color: Colors.sideBarText
        Accessible.ignored: true
    }
    component Line: Rectangle {
        width: row.width
        height: StageMetrics.line
        color: Colors.sideBarLine
    }

    height: 50
    ListView.onReused: opacity = 1 // the row of before may have faded away
    Accessible.role: Accessible.Row
    Accessible.name: words
    Accessible.ignored: !visible || !enabled
    Accessible.focusable: true
    Accessible.focused: atKeyboard
    Accessible.onPressAction: row.table.choose(row.index)

    Behavior on aside {
        NumberAnimation {
            duration: row.screen.fadeDuration / 2
        }
    }
    Rectangle {
        objectName: "keyboardRow"
        anchors.fill: parent
        visible: row.atKeyboard
        color: Colors.keyboardRow
    }
    Item {
        id: face
        objectName: "recordFace"
        x: Math.max(-row.deleteWidth, Math.min(0, row.dragged - row.aside * row.deleteWidth))
        width: row.width
        height: row.height

        Cell {
            objectName: "column1"
            column: 0
            height: 22
            font.pixelSize: 10
        }
        Cell {
            objectName: "column2"
            column: 1
            x: 130
            height: 22
            font.pixelSize: 10
        }
        Cell {
            objectName: "column3"
            column: 2
            y: 20
            height: 28
            font.pixelSize: 12
        }
        Cell {
            objectName: "column4"
            column: 3
            x: 130
            y: 20
            height: 28
            font.pixelSize: 12
        }
        Picture {
            x: 246
            y: 26
            width: 15
            height: 20
            name: "orvo_cell_jian.png"
        }
    }
    Line {
        y: 22
        width: row.width + face.x
    }
    Line {
        y: 50
    }
    Rectangle {
        objectName: "recordDelete" + row.index
        x: row.width + face.x
        width: -face.x
        height: row.height
        visible: face.x < 0
        clip: true
        color: Colors.deletion
        Accessible.role: Accessible.Button
        Accessible.name: deleteWord.text
        Accessible.ignored: !visible || !enabled
        Accessible.onPressAction: row.screen.pressDelete(row.index)

        Text {
            id: deleteWord
            width: row.deleteWidth
            height: row.height
            text: qsTr("Delete")
            textFormat: Text.PlainText
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            font.family: "helvetica"
            font.pixelSize: 14
            color: Colors.textOnDark
            Accessible.ignored: true
        }
        TouchArea {
            anchors.fill: parent
            actsOnLanding: false
            onPressed: row.screen.pressDelete(row.index)
        }
    }
    DragHandler {
        id: drag
        target: null
        yAxis.enabled: false
        onActiveChanged: {
            if (!active)
                row.screen.swipe(face.x < -row.deleteWidth / 2 ? row.index : -1)
        }
    }
}
