pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// The menu beneath the live screen; its right edge stays covered.
FocusScope {
    id: page
    required property LeftSideBarViewController screen

    objectName: "leftSideBarView"
    Accessible.role: Accessible.Pane
    Accessible.name: screen.titleLabel.text
    Accessible.ignored: !visible || !enabled

    Picture {
        anchors.fill: parent
        name: "orvo_all_bg.png"
    }
    Picture {
        width: 320
        height: 44
        name: "orvo_contrast_tab.png"
    }
    LabelView {
        x: 80
        width: 120
        height: 44
        label: page.screen.titleLabel
        Accessible.role: Accessible.Heading
    }
    Picture {
        y: 44
        width: 320
        height: 2
        name: "orvo_all_line.png"
    }
    Column {
        objectName: "mainTableView"
        y: 46
        width: 320

        Repeater {
            model: page.screen.dataList
            delegate: Item {
                id: row
                required property int index
                required property string modelData
                objectName: "menuRow" + index
                width: 320
                height: 44
                activeFocusOnTab: true
                Accessible.role: Accessible.MenuItem
                Accessible.name: modelData
                Accessible.focusable: true
                Accessible.ignored: !visible || !enabled
                Accessible.onPressAction: if (enabled) page.screen.didSelectRow(index)
                Keys.onPressed: event => {
                    event.accepted = KeyRules.presses(event.key, event.modifiers)
                    if (event.accepted && !event.isAutoRepeat)
                        page.screen.didSelectRow(row.index)
                }

                Rectangle {
                    anchors.fill: parent
                    color: Colors.rowLine
                    opacity: 0.5
                    visible: touch.held || touch.hovered
                }
                Text {
                    x: 20
                    width: 200
                    height: 40
                    text: row.modelData
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    verticalAlignment: Text.AlignVCenter
                    color: touch.held ? Colors.panelEdge : Colors.textOnDark
                    font.family: "Arial"
                    font.pixelSize: 16
                    Accessible.ignored: true
                }
                Picture {
                    x: 240
                    y: 10
                    width: 20
                    height: 25
                    name: "orvo_cell_jian.png"
                }
                Rectangle {
                    y: 43
                    width: 320
                    height: StageMetrics.line
                    color: Colors.rowLine
                }
                TouchArea {
                    id: touch
                    anchors.fill: parent
                    actsOnLanding: false
                    onPressed: page.screen.didSelectRow(row.index)
                }
                FocusFrame {
                    width: 270
                    anchors.fill: undefined
                    height: 43
                }
            }
        }
    }
}
