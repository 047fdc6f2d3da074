import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// What the window shows: the live screen with its side bars, the presented screens in front of it, and in front of all an alert. A notice comes
// over whatever is shown.
Stage {
    id: root
    required property SidebarViewController container
    required property ScreenStack screens
    required property Notice notice
    required property Alerts alerts

    FocusScope {
        id: beneath // the alert
        width: 320
        height: parent.height
        enabled: !root.alerts.shown
        focus: enabled

        SidebarView {
            width: 320
            height: parent.height
            container: root.container
            coveredBelow: root.notice.shown ? notice.height + 12 : 0
            visible: !root.container.covered
            enabled: root.screens.count === 0
            focus: enabled
        }
        ModalStack {
            objectName: "modalStack"
            width: 320
            height: parent.height
            stack: root.screens
        }
        Lazily {
            id: notice
            x: 10
            y: parent.height - 68 - height // above the record button
            width: 300
            view: "NoticeView"
            given: ({"notice": root.notice})
            wanted: root.notice.shown
        }
    }
    Lazily {
        width: 320
        height: parent.height
        focus: wanted
        view: "AlertView"
        given: ({"alerts": root.alerts})
        wanted: root.alerts.shown
    }
}
