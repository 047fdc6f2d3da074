#pragma once

#include "shell/ProductContent.h"
#include "ui/FramedScreen.h"

namespace kestrix::shell {

// What the program is, and where its maker is found.
class AboutViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT

  public:
    using FramedScreen::FramedScreen;

    void viewDidLoad() override;
    // Has the maker's page opened.
    void pressURL();

    ui::ImageView logo{*this, "logo"};
    ui::Label lblVersion{*this, "lblVersion"};
    ui::Button btnURL{*this, "btnURL", ui::Button::Event::TouchUpInside};

  private:
    ProductContent product_;
};

}  // namespace kestrix::shell
