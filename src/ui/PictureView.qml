import QtQuick
import Kestrix.Ui

// Draws an ImageView.
Picture {
    required property ImageView imageView

    objectName: imageView.objectName
    name: imageView.shownImage
    visible: !imageView.hidden
    Accessible.role: Accessible.Graphic
    Accessible.name: imageView.accessibleName
    Accessible.description: imageView.description
    Accessible.ignored: !visible || !enabled || imageView.accessibleName === ""
}
