#pragma once

#include <cstdint>

namespace kestrix::ui {

// The frame around the live screen that slides it aside, as the screens inside see it.
class SideBarContainer {
  public:
    static constexpr std::int32_t kClosed = 0;
    static constexpr std::int32_t kLeft = 1;
    static constexpr std::int32_t kRight = 2;

    // Direction of the last slide; process-wide.
    static std::int32_t sideBarDirection;

    // The process-wide container; none until its view has loaded. Not owned.
    static SideBarContainer* share();

    virtual ~SideBarContainer();
    virtual void showSideBarControllerWithDirection(std::int32_t direction) = 0;

  protected:
    // Makes this container the shared one, until it is destroyed.
    void becomeShared();
};

}  // namespace kestrix::ui
