import QtQuick
import Kestrix.Ui
import Kestrix.Link

// What has come from the tester, above; what is sent to it, below.
ScreenFrame {
    id: page
    required property EADSessionTransferViewController screen
    framed: screen

    component Caption: LabelView {
        x: 20
        width: 280
        height: 18
        elide: Text.ElideRight
    }
    component Field: TextFieldView {
        x: 20
        width: 184
        height: 36
    }
    component Send: ButtonView {
        x: 212
        width: 88
        height: 36
        titleAlignment: Text.AlignHCenter
        titleShrinks: true
        frameDistance: 2
    }

    objectName: "sessionTransferView"

    LabelView {
        x: 20
        y: 10
        width: 280
        height: 20
        label: page.screen.label("_receivedBytesLabel")
    }
    Caption {
        y: 38
        label: page.screen.label("_receivedCaption")
    }
    ReceivedBytes {
        x: 20
        y: 58
        width: 280
        height: 142
        field: page.screen.textField("rxResult")
    }
    Caption {
        y: 206
        width: 76
        height: 28
        label: page.screen.label("_readingCaption")
    }
    LabelView {
        x: 100
        y: 206
        width: 56
        height: 28
        label: page.screen.label("testType")
    }
    LabelView {
        x: 160
        y: 206
        width: 140
        height: 28
        label: page.screen.label("testResult")
    }
    Caption {
        y: 246
        label: page.screen.label("_hexCaption")
    }
    Field {
        y: 266
        field: page.screen.textField("_hexToSendTextField")
    }
    Send {
        y: 266
        button: page.screen.button("btnSendHex")
    }
    Caption {
        y: 310
        label: page.screen.label("_stringCaption")
    }
    Field {
        y: 330
        field: page.screen.textField("_stringToSendTextField")
    }
    Send {
        y: 330
        button: page.screen.button("btnSendString")
    }
    Send {
        y: 382
        button: page.screen.button("btnSend10K")
    }
}
