import QtQuick

// Makes a view of this module, by its name, when it is wanted for the first time, and keeps it: what is seldom seen
// costs a start neither time nor memory.
Loader {
    id: lazily
    required property string view // without ".qml"
    property var given: ({})      // its required properties
    property bool wanted: false

    onWantedChanged: make()
    Component.onCompleted: make()

    function make() {
        if (wanted && status === Loader.Null)
            setSource(view + ".qml", given)
    }
}
