pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Storage

// The saved test records, beneath the live screen, which goes on covering the first 50 points.
FocusScope {
    id: page
    required property RightSideBarViewController screen
    property real coveredBelow: 0 // of the list, by a notice

    objectName: "rightSideBarView"
    Accessible.role: Accessible.Pane
    Accessible.name: heading.label.text
    Accessible.ignored: !visible || !enabled

    Picture {
        anchors.fill: parent
        name: "orvo_all_bg.png"
    }
    Item {
        width: 320
        height: 44
        clip: true // the title is as wide as the screen

        Picture {
            anchors.fill: parent
            name: "orvo_contrast_tab.png"
        }
        LabelView {
            id: heading
            x: 163
            width: 320
            height: 44
            label: page.screen.label("lblHistory")
            Accessible.role: Accessible.Heading
        }
    }
    Picture {
        y: 44
        width: 320
        height: 2
        name: "orvo_all_line.png"
    }
    TableView { // over the line, or it would cover the frame
        id: list
        x: 50
        y: 44
        width: 270
        height: page.height - y - foot.height
        bottomMargin: page.coveredBelow > 0 ? page.coveredBelow + 56 - foot.height : 0
        frameLeft: 6 // beside the shadow of the live screen
        emptyColor: Colors.sideBarText
        table: page.screen.table("myTableView")
        rowName: "recordRow"
        title: qsTr("Saved test records: %1").arg(count)
        onMovementStarted: page.screen.swipe(-1)
        delegate: RecordRowView {
            id: rowView
            objectName: list.rowName + index
            width: list.width
            screen: page.screen
            table: list.table
            atKeyboard: list.activeFocus && list.table.currentRow === index

            TapHandler {
                onTapped: list.table.choose(rowView.index)
            }
            TapHandler {
                acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad | PointerDevice.Stylus
                acceptedButtons: Qt.RightButton
                onTapped: point => list.openMenu(rowView.index, rowView, point.position)
            }
            TapHandler {
                id: longTouch
                acceptedDevices: PointerDevice.TouchScreen
                onLongPressed: list.openMenu(rowView.index, rowView, longTouch.point.position)
            }
        }
        remove: Transition {
            NumberAnimation {
                property: "opacity"
                to: 0
                duration: page.screen.fadeDuration
            }
        }
        removeDisplaced: Transition {
            NumberAnimation {
                property: "y"
                duration: page.screen.fadeDuration
            }
        }
    }
    Rectangle { // what was deleted last
        id: foot
        objectName: "recordFoot"
        x: 50
        y: page.height - height
        width: 270
        height: page.screen.label("lblDeleted").hidden ? 0 : 44
        visible: height > 0
        color: Colors.ink

        Rectangle {
            width: parent.width
            height: StageMetrics.line
            color: Colors.panelEdge
        }
        LabelView {
            x: 10
            width: 172
            height: parent.height
            elide: Text.ElideRight
            label: page.screen.label("lblDeleted")
        }
        ButtonView {
            x: 190
            y: 7
            width: 72
            height: 30
            titleInset: 9
            titleSize: 13
            button: page.screen.button("btnPutBack")
        }
    }
}
