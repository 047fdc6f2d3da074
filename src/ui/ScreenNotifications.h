#pragma once

#include <string_view>

// What screens tell each other by notification, without an object.
namespace kestrix::ui {

// Posted when a test record was saved: empty the session list.
inline constexpr std::string_view NSClearTable = "NSClearTable";
// Posted when the right side bar is opened: refill the list of test records.
inline constexpr std::string_view NSRecordData = "NSRecordData";
// Posted when `SideBarContainer::sideBarDirection` was set.
inline constexpr std::string_view NSHomeBackBg = "NSHomeBackBg";
// Posted by the menu: present one of the information screens.
inline constexpr std::string_view NSHelp = "NSHelp";
inline constexpr std::string_view NSAbout = "NSAbout";
inline constexpr std::string_view NSMoreApp = "NSMoreApp";

}  // namespace kestrix::ui
