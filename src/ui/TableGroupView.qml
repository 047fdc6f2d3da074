import QtQuick
import Kestrix.Ui

// What stands above the rows of a group.
Rectangle {
    id: group
    property string title

    objectName: "tableGroup"
    height: 20
    color: Colors.groupGround
    Accessible.role: Accessible.StaticText
    Accessible.name: title
    Accessible.ignored: !visible || !enabled

    Text {
        anchors {
            fill: parent
            leftMargin: 6
            rightMargin: 6
        }
        text: group.title
        textFormat: Text.PlainText
        maximumLineCount: 1
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        font.family: "helvetica"
        font.pixelSize: 10
        font.bold: true
        color: Colors.ink
        Accessible.ignored: true
    }
}
