import Kestrix.Ui
import Kestrix.Live

// What the window shows: the live screen, and the presented screens in front of it.
Stage {
    id: root
    required property MainViewController mainView
    required property ScreenStack screens
    required property Notice notice

    MainView {
        width: 320
        height: parent.height
        screen: root.mainView
        enabled: root.screens.count === 0
        focus: enabled
    }
    ModalStack {
        objectName: "modalStack"
        width: 320
        height: parent.height
        stack: root.screens
    }
    NoticeView {
        x: 10
        y: parent.height - 68 - height // above the record button
        width: 300
        notice: root.notice
    }
}
