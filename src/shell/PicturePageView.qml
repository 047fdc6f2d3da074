pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// Pictures and texts below each other, which scroll beneath the toolbar.
ScreenFrame {
    id: page
    required property PicturePage screen
    framed: screen
    backAt: Qt.point(10, 10)

    objectName: "picturePageView"

    ScrollAreaView {
        y: 4
        width: 320
        height: parent.height - y
        area: page.screen.scrollArea("scrollView")

        Repeater {
            model: page.screen.pictures
            delegate: PictureView {
                required property var modelData
                x: modelData.place.x
                y: modelData.place.y
                width: modelData.place.width
                height: modelData.place.height
                imageView: modelData.imageView
            }
        }
        Repeater {
            model: page.screen.texts
            delegate: LabelView {
                required property var modelData
                x: modelData.place.x
                y: modelData.place.y
                width: modelData.place.width
                height: modelData.place.height
                label: modelData.label
                wraps: !modelData.heading
                Accessible.role: modelData.heading ? Accessible.Heading : Accessible.StaticText
            }
        }
    }
}
