#pragma once

#include "platform/NotificationCenter.h"
#include "ui/FramedScreen.h"

namespace kestrix::shell {

// What lies behind the diagnostics console: which tester is looked for and why it is not there, and, while it
// is there, the way to the console.
class ConsoleSearchViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT

  public:
    using FramedScreen::FramedScreen;

    void viewDidLoad() override;
    void viewWillAppear() override;
    void pressOpen();

    ui::Label lblTester{*this, "lblTester"};
    ui::Label lblState{*this, "lblState"};
    ui::Label lblWhy{*this, "lblWhy"};
    ui::Button btnOpen{*this, "btnOpen", ui::Button::Event::TouchUpInside};

  private:
    void showTester();

    platform::NotificationCenter::Subscription connects_;
    platform::NotificationCenter::Subscription disconnects_;
    platform::NotificationCenter::Subscription searches_;
};

}  // namespace kestrix::shell
