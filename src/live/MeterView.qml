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
        height: 25
    }
    component RcdPart: LabelView {
        height: 15
    }
    component RcdRowView: Item {
        id: row
        required property Label multiplier
        required property Label angle
        required property Label value
        required property Label unit

        RcdPart {
            label: row.multiplier
            x: 45
            width: 50
        }
        RcdPart {
            label: row.angle
            x: 95
            width: 50
        }
        RcdPart {
            label: row.value
            x: 150
            width: 80
        }
        RcdPart {
            label: row.unit
            x: 235
            width: 50
        }
    }

    PictureView {
        imageView: meter.controller.leftAnimaImg
        x: 0
        y: 52
        width: 40
        height: 121
    }
    PictureView {
        imageView: meter.controller.rightAnimaImg
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
        imageView: meter.controller.blueImage
        x: 32
        y: 66
        width: 25
        height: 25
    }
    ButtonView {
        button: meter.controller.btnHelp
        x: 135
        y: 80
        width: 45
        height: 20
        titleInset: 10
        touchMargin: 8
        frameDistance: 2
    }
    LabelView {
        label: meter.controller.lblSimulated
        x: 110
        y: 50
        width: 100
        height: 13
    }
    LabelView {
        label: meter.controller.lblNoCon
        x: 125
        y: 115
        width: 70
        height: 20
    }
    Text {
        readonly property Label label: meter.controller.lblWhyNotConnected
        objectName: label.objectName
        x: 48
        y: 135
        width: 224
        height: 27
        visible: !label.hidden && text !== ""
        text: label.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        fontSizeMode: Text.Fit
        minimumPixelSize: 7
        elide: Text.ElideRight
        maximumLineCount: 4
        horizontalAlignment: label.alignment
        verticalAlignment: Text.AlignTop
        color: label.textColor
        font.family: label.fontFamily
        font.pixelSize: label.fontSize
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        Accessible.ignored: !visible || !enabled
    }

    Reading {
        label: meter.controller.D1Value
        x: 50
        y: 85
        width: 180
    }
    Reading {
        label: meter.controller.D1Unit
        x: 240
        y: 85
        width: 50
    }
    Reading {
        label: meter.controller.D2Value
        x: 50
        y: 130
        width: 180
    }
    Reading {
        label: meter.controller.D2Unit
        x: 240
        y: 130
        width: 50
    }

    RcdRowView {
        y: 70
        multiplier: meter.controller.RCD1Row
        angle: meter.controller.RCD1Angle
        value: meter.controller.RCD1Value
        unit: meter.controller.RCD1Unit
    }
    RcdRowView {
        y: 85
        multiplier: meter.controller.RCD2Row
        angle: meter.controller.RCD2Angle
        value: meter.controller.RCD2Value
        unit: meter.controller.RCD2Unit
    }
    RcdRowView {
        y: 100
        multiplier: meter.controller.RCD3Row
        angle: meter.controller.RCD3Angle
        value: meter.controller.RCD3Value
        unit: meter.controller.RCD3Unit
    }
    RcdRowView {
        y: 115
        multiplier: meter.controller.RCD4Row
        angle: meter.controller.RCD4Angle
        value: meter.controller.RCD4Value
        unit: meter.controller.RCD4Unit
    }
    RcdRowView {
        y: 130
        multiplier: meter.controller.RCD5Row
        angle: meter.controller.RCD5Angle
        value: meter.controller.RCD5Value
        unit: meter.controller.RCD5Unit
    }
    RcdRowView {
        y: 145
        multiplier: meter.controller.RCD6Row
        angle: meter.controller.RCD6Angle
        value: meter.controller.RCD6Value
        unit: meter.controller.RCD6Unit
    }
}
