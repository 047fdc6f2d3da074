pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui

// One measurement of the session: six columns and the lines between and around them.
Item {
    id: row
    required property var model
    required property int index

    component Column: Text {
        height: row.height
        textFormat: Text.PlainText
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.family: "helvetica"
        font.pixelSize: 8
        // A long text is drawn smaller rather than cut.
        fontSizeMode: Text.Fit
        minimumPixelSize: 4
        color: "#10182a"
        Accessible.ignored: true
    }
    component Line: Rectangle {
        id: line
        property bool upright: false
        width: upright ? 1 : 320
        height: upright ? row.height : 1
        color: "#6c6c6c"
        transform: Scale { // one point is drawn in whole pixels
            xScale: line.upright ? StageMetrics.line : 1
            yScale: line.upright ? 1 : StageMetrics.line
        }
    }

    objectName: "sessionRow" + index
    width: 320
    height: model.height
    Accessible.role: Accessible.Row
    Accessible.ignored: !visible || !enabled
    Accessible.name: [model.DataName, model.Function, model.Parameters, model.Result, model.DateTime].join(", ")

    Column {
        objectName: "column1"
        text: row.model.DataName
        x: 0
        width: 50
    }
    Column {
        objectName: "column2"
        text: row.model.Function
        x: 51
        width: 44
    }
    Column {
        objectName: "column3"
        text: row.model.Parameters
        x: 96
        width: 61
    }
    Column {
        objectName: "column4"
        text: row.model.Result
        x: 158
        width: 60
    }
    Column {
        objectName: "column5"
        text: row.model.DateTime
        x: 219
        width: 50
    }
    Column {
        objectName: "column6"
        text: row.model.Comments
        x: 270
        width: 50
    }
    Repeater {
        model: [50, 95, 157, 218, 269]
        delegate: Line {
            required property int modelData
            x: modelData
            upright: true
        }
    }
    Line {}
    Line {
        y: row.height - StageMetrics.line
    }
}
