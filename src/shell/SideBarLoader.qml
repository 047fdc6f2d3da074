import QtQuick
import Kestrix.Ui

// A side bar. Its view is made when it is uncovered for the first time, and kept.
Loader {
    id: loader
    required property string view // its QML file
    required property Screen screen
    required property bool uncovered

    anchors.fill: parent
    visible: uncovered
    focus: uncovered
    onUncoveredChanged: {
        if (uncovered && status === Loader.Null)
            setSource(view, {"screen": screen})
    }
}
