import QtQuick
import Kestrix.Ui

// The shadow of the content area, on what lies right of it.
Rectangle {
    width: 6
    gradient: Gradient {
        orientation: Gradient.Horizontal
        GradientStop {
            position: 0
            color: Colors.shadow
        }
        GradientStop {
            position: 1
            color: Colors.clear
        }
    }
}
