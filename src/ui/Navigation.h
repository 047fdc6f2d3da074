#pragma once

#include "ui/ScreenId.h"

namespace kestrix::ui {

// How a screen puts another in front of itself, and takes itself away again.
class Navigation {
  public:
    virtual ~Navigation() = default;
    // Whether there is such a screen in this application. What presents one that is not there is shown
    // disabled.
    virtual bool has(ScreenId id) const = 0;
    virtual void present(ScreenId id, bool animated) = 0;
    // The topmost one; nothing when none is presented.
    virtual void dismiss(bool animated) = 0;
};

}  // namespace kestrix::ui
