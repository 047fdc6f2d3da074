import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// What the window of the diagnostics console shows: the search for the tester, and the console in front of it.
Stage {
    id: root
    required property ConsoleSearchViewController search
    required property ScreenStack screens

    ConsoleSearchView {
        width: 320
        height: parent.height
        screen: root.search
        visible: !root.search.covered
        enabled: root.screens.count === 0
        focus: enabled
    }
    ModalStack {
        objectName: "modalStack"
        width: 320
        height: parent.height
        stack: root.screens
    }
}
