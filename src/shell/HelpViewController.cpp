#include "shell/HelpViewController.h"

namespace kestrix::shell {

void HelpViewController::viewDidLoad() {
    btnBluetooth.setTitle(tr("Bluetooth Connection Help"));
    btnBluetooth.setAction([this] { pressBCH(); });
    btnSafety.setTitle(tr("Safety Tips"));
    btnSafety.setAction([this] { pressST(); });
    for (ui::Button* button : {&btnBluetooth, &btnSafety})
        button->setBackgroundImage(QStringLiteral("orvo_imformation_bg.png"));
}

void HelpViewController::pressBCH() {
    services_.navigation.present(ui::ScreenId::BluetoothConnectionHelp, true);
}

void HelpViewController::pressST() {
    services_.navigation.present(ui::ScreenId::SafetyTips, true);
}

void HelpViewController::pressUSE() {
    services_.navigation.present(ui::ScreenId::HowtoUse, true);
}

}  // namespace kestrix::shell
