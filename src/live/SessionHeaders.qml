pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Live

// The column headers of the session list.
Item {
    id: headers
    required property MainViewController controller

    component Header: LabelView {
        required property string name
        label: headers.controller.label(name)
        height: 25
    }

    Rectangle { // one ground, so that no gap shows between the columns
        anchors.fill: parent
        color: "#455e95"
    }
    Header {
        name: "headerDataName"
        x: 0
        width: 50
    }
    Header {
        name: "headerFunction"
        x: 51
        width: 44
    }
    Header {
        name: "headerParameters"
        x: 96
        width: 61
    }
    Header {
        name: "headerResult"
        x: 158
        width: 60
    }
    Header {
        name: "headerDateTime"
        x: 219
        width: 50
    }
    Header {
        name: "headerComments"
        x: 270
        width: 50
    }
}
