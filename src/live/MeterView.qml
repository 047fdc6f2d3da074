pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Live

// The tester's display: readings, RCD rows, warning, lightning, and what stands there without a link.
Item {
    id: meter
    required property MainViewController controller
    readonly property alias reading: spokenReading

    component Reading: LabelView {
        required property string name
        label: meter.controller.label(name)
        height: 25
    }
    component RcdPart: LabelView {
        required property string name
        label: meter.controller.label(name)
        height: 15
    }

    PictureView {
        imageView: meter.controller.imageView("leftAnimaImg")
        x: 0
        y: 52
        width: 40
        height: 121
    }
    PictureView {
        imageView: meter.controller.imageView("rightAnimaImg")
        x: 280
        y: 52
        width: 40
        height: 121
    }
    Item { // the reading as a whole, for screen readers
        id: spokenReading
        objectName: "spokenReading"
        x: 40
        y: 64
        width: 240
        height: 100
        activeFocusOnTab: true
        Accessible.role: Accessible.StaticText
        Accessible.ignored: !visible || !enabled
        Accessible.name: meter.controller.spokenReading.text
        Accessible.focusable: true
        FocusFrame {}
    }
    PictureView {
        imageView: meter.controller.imageView("blueImage")
        x: 32
        y: 66
        width: 25
        height: 25
    }
    ButtonView {
        button: meter.controller.button("btnHelp")
        x: 135
        y: 80
        width: 45
        height: 20
        titleInset: 10
        touchMargin: 8
        frameDistance: 2
    }
    LabelView {
        label: meter.controller.label("lblNoCon")
        x: 125
        y: 115
        width: 70
        height: 20
    }

    Reading {
        name: "D1Value"
        x: 50
        y: 85
        width: 180
    }
    Reading {
        name: "D1Unit"
        x: 240
        y: 85
        width: 50
    }
    Reading {
        name: "D2Value"
        x: 50
        y: 130
        width: 180
    }
    Reading {
        name: "D2Unit"
        x: 240
        y: 130
        width: 50
    }

    Repeater {
        model: 6
        delegate: Item {
            id: row
            required property int index
            readonly property string rowName: "RCD" + (index + 1)
            y: 70 + 15 * index
            RcdPart {
                name: row.rowName + "Row"
                x: 45
                width: 50
            }
            RcdPart {
                name: row.rowName + "Angle"
                x: 95
                width: 50
            }
            RcdPart {
                name: row.rowName + "Value"
                x: 150
                width: 80
            }
            RcdPart {
                name: row.rowName + "Unit"
                x: 235
                width: 50
            }
        }
    }
}
