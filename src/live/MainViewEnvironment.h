#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "link/BluetoothConnect.h"
#include "platform/DateText.h"
#include "platform/DocumentsFolder.h"
#include "platform/Scheduler.h"
#include "platform/UserDefaults.h"
#include "ui/Navigation.h"
#include "ui/TextMeasure.h"

namespace kestrix::live {

// The time patterns of measurements. "YYYY" is the year of the week: around the turn of a year it can be the
// next or the previous one. It is the stored form.
inline constexpr const char* kTimePattern = "YYYY-MM-dd HH:mm:ss";

// What the live screen needs from around it. All that it refers to outlives the screen.
struct MainViewEnvironment {
    platform::UserDefaults& defaults;
    platform::DocumentsFolder documents;  // that of the database
    platform::Scheduler& scheduler;       // of the animations
    ui::Navigation& navigation;
    const ui::TextMeasure& textMeasure;
    const platform::DateText& timeText;  // with kTimePattern
    std::function<std::chrono::system_clock::time_point()> now;
    // The link; the screen starts it and becomes its delegate.
    std::function<std::unique_ptr<link::BluetoothConnect>()> makeBluetoothConnect;
};

}  // namespace kestrix::live
