pragma ComponentBehavior: Bound

import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// The maker's further applications, one below the other.
ScreenFrame {
    id: page
    required property MoreAppsViewController screen
    framed: screen
    backAt: Qt.point(10, 10)

    objectName: "moreAppsView"

    Column {
        width: 320

        Repeater {
            model: page.screen.dataList
            delegate: Item {
                id: row
                required property int index
                required property var modelData
                objectName: "appRow" + index
                width: 320
                height: 60
                activeFocusOnTab: true
                Accessible.role: Accessible.Link
                Accessible.name: modelData.Title
                Accessible.description: modelData.Content
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
                Picture {
                    x: 10
                    y: 7
                    width: 45
                    height: 45
                    name: row.modelData.ImgUrl
                }
                Text {
                    x: 65
                    y: 6
                    width: 220
                    height: 16
                    text: row.modelData.Title
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                    verticalAlignment: Text.AlignVCenter
                    color: Colors.textOnDark
                    font.family: "Arial"
                    font.pixelSize: 12
                    font.bold: true
                    Accessible.ignored: true
                }
                Text {
                    x: 65
                    y: 22
                    width: 250
                    height: 35
                    rightPadding: 27 // clear of the arrow
                    text: row.modelData.Content
                    textFormat: Text.PlainText
                    wrapMode: Text.Wrap
                    elide: Text.ElideRight
                    color: Colors.textOnDark
                    font.family: "Helvetica"
                    font.pixelSize: 10
                    Accessible.ignored: true
                }
                Picture {
                    x: 290
                    y: 17
                    width: 20
                    height: 25
                    name: "orvo_cell_jian.png"
                }
                Rectangle {
                    y: 59
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
                    anchors.bottomMargin: 1
                }
            }
        }
    }
}
