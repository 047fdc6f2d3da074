import QtQuick
import Kestrix.Ui

// Draws a Label: one line, centred in height, or, wrapped, as many as it takes from the top on.
Rectangle {
    id: view
    required property Label label
    readonly property alias paintedWidth: text.paintedWidth
    property real textWidth: width   // a longer text may stand out of the label's ground on both sides
    property bool wraps: false
    property alias elide: text.elide // of a text that is too wide at its least size, too

    objectName: label.objectName
    color: label.backgroundColor
    visible: !label.hidden
    Accessible.role: Accessible.StaticText
    Accessible.name: label.accessibleName || label.text
    Accessible.ignored: !visible || !enabled || label.text.trim() === ""

    Text {
        id: text
        x: (view.width - width) / 2
        width: view.textWidth
        height: view.height
        // One line has no room for more; to lay out all of a very long text only takes time.
        text: view.label.text.length > 500 ? view.label.text.slice(0, 500) : view.label.text
        textFormat: Text.PlainText
        color: view.label.textColor
        font.family: view.label.fontFamily
        font.pixelSize: view.label.fontSize
        fontSizeMode: view.label.shrinksToFit ? Text.Fit : Text.FixedSize
        minimumPixelSize: 6
        horizontalAlignment: view.label.alignment
        wrapMode: view.wraps ? Text.Wrap : Text.NoWrap
        verticalAlignment: view.wraps ? Text.AlignTop : Text.AlignVCenter
        Accessible.ignored: true
    }
}
