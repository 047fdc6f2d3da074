import QtQuick
import Kestrix.Ui

// Words beside something that the mouse rests on and that shows none itself. In front of everything on the
// stage, and never beyond its edges.
Item {
    id: tip
    required property Item target
    required property string text
    property bool wanted: false
    property real waited: 0 // 1: the mouse has rested long enough
    readonly property bool rested: wanted && waited === 1

    objectName: target.objectName + "Tip"
    parent: rested ? stageOf(target) : target
    visible: rested && text !== ""
    z: 1000
    width: Math.ceil(words.implicitWidth) + 10
    height: 16

    onWantedChanged: {
        rest.stop()
        waited = 0
        if (wanted)
            rest.start()
    }
    onVisibleChanged: if (visible) place()
    Accessible.ignored: true // the target's name says the same

    function stageOf(item: Item): Item {
        let stage = item
        while (stage !== null && stage.objectName !== "points")
            stage = stage.parent
        return stage
    }
    function place() {
        const spot = target.mapToItem(parent, target.width / 2, 0)
        x = Math.max(2, Math.min(parent.width - width - 2, spot.x - width / 2))
        const above = spot.y - height - 3
        y = above > 0 ? above : spot.y + target.height + 3
    }

    NumberAnimation {
        id: rest
        target: tip
        property: "waited"
        from: 0
        to: 1
        duration: 600
    }
    Rectangle {
        anchors.fill: parent
        color: Colors.tip
        border {
            width: StageMetrics.line
            color: Colors.header
        }
    }
    Text {
        id: words
        anchors.centerIn: parent
        text: tip.text
        textFormat: Text.PlainText
        color: Colors.textOnDark
        font.family: "helvetica"
        font.pixelSize: 9
        Accessible.ignored: true
    }
}
