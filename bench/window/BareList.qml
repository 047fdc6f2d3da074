pragma ComponentBehavior: Bound

import QtQuick

// A list of rows of six texts, and nothing else.
Rectangle {
    id: scene
    required property var rows

    color: "white"

    ListView {
        id: list
        objectName: "rows"
        anchors.fill: parent
        model: scene.rows
        reuseItems: true
        cacheBuffer: 0
        clip: true
        delegate: Item {
            id: row
            required property var texts
            width: list.width
            height: 20

            Repeater {
                model: 6
                delegate: Text {
                    required property int index
                    x: 64 * index
                    width: 64
                    height: 20
                    text: row.texts[index]
                    font.pixelSize: 8
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                }
            }
        }
    }
}
