import QtQuick
import Kestrix.Ui
import Kestrix.Shell

// Logo, version, and the way to the maker's page.
ScreenFrame {
    id: page
    required property AboutViewController screen
    framed: screen
    backAt: Qt.point(10, 10)

    objectName: "aboutView"

    PictureView {
        x: 60
        y: 0
        width: 200
        height: 100
        imageView: page.screen.imageView("logo")
    }
    LabelView {
        x: 60
        y: 100
        width: 200
        height: 24
        label: page.screen.label("lblVersion")
    }
    ButtonView {
        id: link
        x: 60
        y: 124
        width: 200
        height: 25
        titleAlignment: Text.AlignHCenter
        titleShrinks: true
        Accessible.role: Accessible.Link
        button: page.screen.button("btnURL")

        Rectangle { // as a link is drawn
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 3
            x: 10
            width: parent.width - 20
            height: StageMetrics.line
            color: Colors.panelEdge
        }
    }
}
