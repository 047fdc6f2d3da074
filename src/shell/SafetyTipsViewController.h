#pragma once

#include "shell/PicturePage.h"

namespace kestrix::shell {

// How to measure without harm to anybody: five pictures, which a screen reader tells in words.
class SafetyTipsViewController final : public kestrix::shell::PicturePage {
    Q_OBJECT

  public:
    using PicturePage::PicturePage;

    void viewDidLoad() override;
};

}  // namespace kestrix::shell
