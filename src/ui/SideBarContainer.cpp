#include "ui/SideBarContainer.h"

namespace kestrix::ui {
namespace {

SideBarContainer* shared = nullptr;

}  // namespace

std::int32_t SideBarContainer::sideBarDirection = SideBarContainer::kClosed;

SideBarContainer* SideBarContainer::share() {
    return shared;
}

SideBarContainer::~SideBarContainer() {
    if (shared == this) shared = nullptr;
}

void SideBarContainer::becomeShared() {
    shared = this;
}

}  // namespace kestrix::ui
