import QtQuick
import Kestrix.Ui

// A picture of the artwork whose border keeps its size, and whose middle is stretched.
Item {
    id: patch
    required property string name
    // Of the border, in points.
    property int leftBorder: 0
    property int topBorder: 0
    property int rightBorder: leftBorder
    property int bottomBorder: topBorder

    BorderImage {
        readonly property int pixels: StageMetrics.pictureScale // in a point
        width: patch.width * pixels
        height: patch.height * pixels
        scale: 1 / pixels
        transformOrigin: Item.TopLeft
        source: StageMetrics.picture(patch.name, pixels)
        border {
            left: patch.leftBorder * pixels
            top: patch.topBorder * pixels
            right: patch.rightBorder * pixels
            bottom: patch.bottomBorder * pixels
        }
    }
}
