#pragma once

#include "shell/PicturePage.h"

namespace kestrix::shell {

// How the tester is connected for each of its functions. Nothing presents it but
// HelpViewController::pressUSE.
class HowtoUseViewController final : public kestrix::shell::PicturePage {
    Q_OBJECT

  public:
    using PicturePage::PicturePage;

    void viewDidLoad() override;

    // Adds the heading of a function's pictures. y: of its upper edge, in points of what scrolls.
    void setLables(const QString& text, double y);
};

}  // namespace kestrix::shell
