import QtQuick
import Kestrix.Ui
import Kestrix.Live

// The measurements of this session, oldest first.
ListView {
    id: list
    required property MainViewController controller

    objectName: "tableView"
    model: controller.dataList
    delegate: SessionRow {}
    clip: true
    bottomMargin: 4 // the bottom bar covers as much of the list
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    keyNavigationEnabled: false
    Accessible.role: Accessible.Table
    Accessible.ignored: !visible || !enabled
    Accessible.name: "Measurements of this session: " + count
    Accessible.focusable: true
    Keys.onUpPressed: scrollBy(-20)
    Keys.onDownPressed: scrollBy(20)
    Keys.onPressed: event => {
        const pages = {[Qt.Key_PageUp]: -1, [Qt.Key_PageDown]: 1, [Qt.Key_Home]: -Infinity, [Qt.Key_End]: Infinity}
        if (!(event.key in pages))
            return
        event.accepted = true
        scrollBy(pages[event.key] * height)
    }

    function scrollBy(distance: real) {
        const last = originY + contentHeight + bottomMargin - height
        contentY = Math.max(originY, Math.min(last, contentY + distance))
    }

    Connections {
        target: list.controller.dataList
        function onScrollToLastRow() {
            list.positionViewAtEnd()
            list.contentY += list.bottomMargin
            list.returnToBounds()
        }
    }
    FocusFrame {
        parent: list
        anchors.bottomMargin: list.bottomMargin
    }
}
