pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Live

// The tester's functions in the order of its dial, as one bar.
Item {
    id: titles
    required property MainViewController controller

    component Title: LabelView {
        height: 31
    }

    Title {
        label: titles.controller.fun1
        x: 0
        width: 78
    }
    Title {
        label: titles.controller.fun2
        x: 80
        width: 30
    }
    Title {
        label: titles.controller.fun3
        x: 112
        width: 70
    }
    Title {
        label: titles.controller.fun4
        x: 184
        width: 20
    }
    Title {
        label: titles.controller.fun5
        x: 206
        width: 72
    }
    Title {
        label: titles.controller.fun6
        x: 280
        width: 40
    }
    Repeater {
        model: [78, 110, 182, 204, 278]
        delegate: Rectangle {
            required property int modelData
            required property int index
            objectName: "separator" + (index + 1)
            x: modelData
            width: 2
            height: 31
            color: Colors.stage
        }
    }
}
