#pragma once

#include <string>

#include "apps/kestrix-cli/Ending.h"
#include "link/BluetoothConnect.h"
#include "platform/AccessoryManager.h"
#include "platform/Scheduler.h"
#include "platform/UserDefaults.h"

namespace kestrix::cli {

// The ini file for the link state; given: empty for the command line's own.
QString linkSettingsPath(const std::string& given);

// The pipeline from a tester to its records, joined as the application joins it.
class Link {
  public:
    // settings: as above. The scheduler must outlive it.
    Link(const std::string& settings, platform::Scheduler& scheduler);

    // Looks for the tester at this URI. Anything but kDone is how the command ends, also because the settings
    // may not be used.
    Ending addSource(const std::string& uri);

    // Why the tester is not found; empty when nothing is wrong.
    std::string problem() const;

    platform::Scheduler& scheduler;
    platform::UserDefaults defaults;
    platform::AccessoryManager manager;
    link::BluetoothConnect connect;
};

}  // namespace kestrix::cli
