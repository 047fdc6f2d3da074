#pragma once

#include "ui/FramedScreen.h"

namespace kestrix::shell {

// What the menu's Help opens: the way to the screens that help.
class HelpViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT

  public:
    using FramedScreen::FramedScreen;

    void viewDidLoad() override;

    // Present the help with the connection, the safety tips, and how to use the tester. No button presses the
    // last one.
    void pressBCH();
    void pressST();
    void pressUSE();

    ui::Button btnBluetooth{*this, "btnBluetooth", ui::Button::Event::TouchUpInside};
    ui::Button btnSafety{*this, "btnSafety", ui::Button::Event::TouchUpInside};
};

}  // namespace kestrix::shell
