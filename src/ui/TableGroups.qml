import QtQuick
import Kestrix.Ui

// How the groups of a table are drawn. In a file of its own: a list makes them outside of the context in which bound
// components can be made, and tells them their text in that context, also when it uses one anew.
QtObject {
    readonly property Component view: TableGroupView {
        width: parent === null ? 0 : parent.width
        title: section // qmllint disable unqualified
    }
}
