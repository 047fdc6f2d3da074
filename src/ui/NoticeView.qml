import QtQuick
import Kestrix.Ui

// Draws a Notice: a dark line with light text near the bottom, over what is shown. Only its action takes a touch.
Item {
    id: view
    required property Notice notice

    objectName: "notice"
    visible: notice.shown
    implicitHeight: Math.max(words.implicitHeight + 16, 36)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: notice.text
    Accessible.ignored: !notice.shown

    Rectangle {
        anchors.fill: parent
        color: "#10182a"
        border {
            width: StageMetrics.line
            color: "#8fb4e8"
        }
    }
    Text {
        id: words
        anchors {
            left: parent.left
            right: action.visible ? action.left : parent.right
            leftMargin: 12
            rightMargin: 12
            verticalCenter: parent.verticalCenter
        }
        text: view.notice.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: 4
        elide: Text.ElideRight
        color: "white"
        font.family: "Arial"
        font.pixelSize: 14
        Accessible.ignored: true
    }
    Item {
        id: action
        objectName: "noticeAction"
        anchors {
            right: parent.right
            top: parent.top
            bottom: parent.bottom
        }
        width: title.implicitWidth + 24
        visible: view.notice.actionTitle !== ""
        activeFocusOnTab: true
        onVisibleChanged: if (!visible) focus = false
        Accessible.role: Accessible.Button
        Accessible.name: view.notice.actionTitle
        Accessible.focusable: true
        Accessible.ignored: !visible
        Accessible.onPressAction: view.notice.pressAction()
        Keys.onPressed: event => {
            const presses = event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter
            if (!presses || (event.modifiers & ~Qt.KeypadModifier) !== Qt.NoModifier)
                return
            event.accepted = true
            if (!event.isAutoRepeat)
                view.notice.pressAction()
        }

        Text {
            id: title
            anchors.centerIn: parent
            text: view.notice.actionTitle
            textFormat: Text.PlainText
            color: "#ffd166"
            font.family: "Arial"
            font.pixelSize: 14
            font.bold: true
            Accessible.ignored: true
        }
        TapHandler {
            gesturePolicy: TapHandler.WithinBounds
            onTapped: view.notice.pressAction()
        }
        FocusFrame {}
    }
}
