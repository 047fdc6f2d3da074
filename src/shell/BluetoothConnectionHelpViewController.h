#pragma once

#include "shell/PicturePage.h"

namespace kestrix::shell {

// Help with the connection: how a tester is paired, and what follows.
class BluetoothConnectionHelpViewController final : public kestrix::shell::PicturePage {
    Q_OBJECT

  public:
    using PicturePage::PicturePage;

    void viewDidLoad() override;
};

}  // namespace kestrix::shell
