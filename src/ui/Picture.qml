import QtQuick
import Kestrix.Ui

// A picture of the artwork by its name, as sharp as the window needs it.
Image {
    required property string name

    source: StageMetrics.picture(name, StageMetrics.pictureScale)
    smooth: true
}
