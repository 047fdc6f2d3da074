import QtQuick

// As many items as another scene, with nothing behind them.
Rectangle {
    id: scene
    required property int shownTexts
    required property int hiddenTexts
    required property int shownRectangles
    required property int hiddenRectangles

    component Line: Text {
        required property int index
        x: 64 * (index % 6)
        y: 20 * Math.floor(index / 6)
        text: "Text " + index
        color: "white"
        font.pixelSize: 14
    }
    component Box: Rectangle {
        required property int index
        x: 64 * (index % 6)
        y: 20 * Math.floor(index / 6) + 300
        width: 60
        height: 18
        color: "#2779cd"
    }

    color: "#0e1626"
    Repeater {
        model: scene.shownTexts
        delegate: Line {}
    }
    Repeater {
        model: scene.hiddenTexts
        delegate: Line {
            visible: false
        }
    }
    Repeater {
        model: scene.shownRectangles
        delegate: Box {}
    }
    Repeater {
        model: scene.hiddenRectangles
        delegate: Box {
            visible: false
        }
    }
}
