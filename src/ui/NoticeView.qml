import QtQuick
import Kestrix.Ui

// Draws a Notice: a dark line with light text near the bottom, over what is shown. Only its action takes a touch.
Item {
    id: view
    required property Notice notice

    objectName: "notice"
    visible: notice.shown
    implicitHeight: Math.max(Math.ceil(words.implicitHeight) + 16, 36)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: notice.text
    Accessible.ignored: !visible || !enabled

    Rectangle {
        anchors.fill: parent
        color: Colors.ink
        border {
            width: StageMetrics.line
            color: Colors.panelEdge
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
        color: Colors.textOnDark
        font.family: "Arial"
        font.pixelSize: 14
        Accessible.ignored: true
    }
    PanelButton {
        id: action
        objectName: "noticeAction"
        anchors {
            right: parent.right
            top: parent.top
            bottom: parent.bottom
            margins: 4 // so that its frame keeps clear of the panel's line
        }
        visible: view.notice.actionTitle !== ""
        title: view.notice.actionTitle
        onPressed: view.notice.pressAction()
    }
}
