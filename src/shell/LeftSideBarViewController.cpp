#include "shell/LeftSideBarViewController.h"

#include <array>

#include "live/MainViewController.h"
#include "platform/NotificationCenter.h"
#include "ui/Palette.h"
#include "ui/ScreenNotifications.h"

namespace kestrix::shell {

LeftSideBarViewController::LeftSideBarViewController(ui::ScreenId id, const ui::Services& services)
    : Screen(id), services_(services) {}

LeftSideBarViewController::~LeftSideBarViewController() = default;

void LeftSideBarViewController::viewDidLoad() {
    menuTitle.setText(tr("Informations"));
    menuTitle.setFont(QStringLiteral("Arial"), 20);
    menuTitle.setTextColor(ui::Palette::textOnDark);
    menuTitle.setAlignment(Qt::AlignHCenter);
    dataList_ = {tr("Help"), tr("About")};
    if (delegate_ == nullptr) return;
    content_ = subConWithIndex(0);
    delegate_->leftSideBarSelectWithController(content_.get());
    selectIdnex_ = 0;
}

std::unique_ptr<NavigationContainer> LeftSideBarViewController::subConWithIndex(std::int32_t i) {
    auto live = std::make_unique<live::MainViewController>(services_);
    live->index = i + 1;
    return std::make_unique<NavigationContainer>(std::move(live));
}

void LeftSideBarViewController::didSelectRow(int row) {
    constexpr std::array kPresses{&LeftSideBarViewController::pressHelp,
                                  &LeftSideBarViewController::pressAbout,
                                  &LeftSideBarViewController::pressMA};
    if (row >= 0 && row < static_cast<int>(kPresses.size()))
        (this->*kPresses.at(static_cast<std::size_t>(row)))();
}

void LeftSideBarViewController::pressHelp() {
    platform::NotificationCenter::defaultCenter().post({ui::NSHelp});
}

void LeftSideBarViewController::pressAbout() {
    platform::NotificationCenter::defaultCenter().post({ui::NSAbout});
}

void LeftSideBarViewController::pressMA() {
    platform::NotificationCenter::defaultCenter().post({ui::NSMoreApp});
}

}  // namespace kestrix::shell
