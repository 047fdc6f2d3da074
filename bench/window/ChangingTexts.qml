import QtQuick

// Texts that are set from outside.
Rectangle {
    id: scene
    required property int texts

    color: "#0e1626"
    Repeater {
        model: scene.texts
        delegate: Text {
            required property int index
            objectName: "text"
            x: 90 * (index % 4)
            y: 30 * Math.floor(index / 4)
            color: "white"
            font.pixelSize: 20
        }
    }
}
