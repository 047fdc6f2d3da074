import QtQuick
import Kestrix.Ui

// The 320 points wide stage that every screen stands on, fitted into the window.
Rectangle {
    id: stage
    default property alias content: points.data

    objectName: "stage"
    color: Colors.stage

    Item {
        id: points
        objectName: "points"
        x: StageMetrics.left
        width: 320
        height: StageMetrics.height
        clip: x > 0 // on a wide window nothing shows beside the stage
        transform: Scale {
            xScale: StageMetrics.factor
            yScale: StageMetrics.factor
        }
    }
}
