#include "shell/BluetoothConnectionHelpViewController.h"

namespace kestrix::shell {
namespace {

constexpr QRectF kPairingPicture{20, 12, 280, 170};
constexpr double kTextLeft = 30;
constexpr double kTextWidth = 260;
constexpr double kMostTextHeight = 400;
constexpr double kTextGap = 12;
constexpr int kTextSize = 16;

}  // namespace

void BluetoothConnectionHelpViewController::viewDidLoad() {
    addPicture(
        "orvo_help_blue_img2.png", kPairingPicture,
        {tr("How the tester is connected over Bluetooth"),
         tr("1 Switch on the tester, and its Bluetooth. 2 Pair: press its item, Tester, in these settings of "
            "Bluetooth. 3 Connected: Kestrix shows the readings, such as 230 V.")});
    const QString text =
        tr("Click the record icon in the app and confirm opening the bluebooth connecting. Press the item to "
           "pair. If connect successfully, show “Connected” and automatically jump to recording screen. "
           "Otherwise show \"Disconnected\" and stay in the bluebooth connecting screen.");
    const QString font = QStringLiteral("Arial");
    const double height =
        services_.textMeasure.wrappedHeight(text, font, kTextSize, kTextWidth, kMostTextHeight);
    const QRectF place(kTextLeft, kPairingPicture.bottom() + kTextGap, kTextWidth, height);
    addText(text, place, false).setFont(font, kTextSize);
    scrollView.setAccessibleName(tr("Help with the connection"));
    scrollView.setContentHeight(place.bottom() + kTextGap);
}

}  // namespace kestrix::shell
