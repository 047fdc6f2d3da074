#pragma once

#include <string>
#include <vector>

#include "ui/FramedScreen.h"

namespace kestrix::madeup {

// A screen that no user sees: it shows each part that screens are made of. The model of a new screen.
class MadeUpViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT

  public:
    using FramedScreen::FramedScreen;

    void viewDidLoad() override;
    void pressAsk();
    void pressTell();

    std::vector<std::string> heard;  // what reached it, in order

    ui::Label lblProject{*this, "lblProject"};
    ui::Label lblOperator{*this, "lblOperator"};
    ui::TextField projectName{*this, "projectName"};
    ui::TextField operators{*this, "operators"};
    ui::Button btnAsk{*this, "btnAsk", ui::Button::Event::TouchUpInside};
    ui::Button btnTell{*this, "btnTell", ui::Button::Event::TouchDown};
    ui::ListModel rows{
        {{QStringLiteral("Name"), tr("Name"), 0, 100}, {QStringLiteral("Result"), tr("Result"), 101, 219}}};
    ui::Table records{*this, "records", rows};
};

}  // namespace kestrix::madeup
