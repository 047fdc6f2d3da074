#pragma once

#include "shell/ConsoleApplication.h"
#include "shell/StageWindow.h"

namespace kestrix::shell {

// The window of the diagnostics console. It remembers no place.
class ConsoleWindow final : public StageWindow {
  public:
    // The application outlives the window.
    explicit ConsoleWindow(ConsoleApplication& application);

    bool load() override;

  private:
    ConsoleApplication& application_;
};

}  // namespace kestrix::shell
