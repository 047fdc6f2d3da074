import QtQuick
import Kestrix.Ui
import Kestrix.Madeup

// Each part that screens are made of.
ScreenFrame {
    id: page
    required property MadeUpViewController screen
    framed: screen

    objectName: "madeUpView"

    LabelView {
        label: page.screen.label("lblProject")
        x: 20
        y: 14
        width: 280
        height: 20
    }
    TextFieldView {
        field: page.screen.textField("projectName")
        x: 20
        y: 36
        width: 280
        height: 32
    }
    LabelView {
        label: page.screen.label("lblOperator")
        x: 20
        y: 80
        width: 280
        height: 20
    }
    TextFieldView {
        field: page.screen.textField("operators")
        x: 20
        y: 102
        width: 280
        height: 32
    }
    ButtonView {
        button: page.screen.button("btnAsk")
        x: 20
        y: 150
        width: 90
        height: 40
        titleInset: 12
    }
    ButtonView {
        button: page.screen.button("btnTell")
        x: 210
        y: 150
        width: 90
        height: 40
        titleInset: 12
    }
    TableHeader {
        y: 210
        width: 320
        height: 25
        table: page.screen.table("records")
    }
    Rectangle {
        y: 235
        width: 320
        height: 120
        color: Colors.paper
    }
    TableView {
        y: 235
        width: 320
        height: 120
        table: page.screen.table("records")
        title: qsTr("Records: %1").arg(count)
    }
}
