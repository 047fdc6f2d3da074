#pragma once

#include <memory>

#include "platform/AccessoryListing.h"
#include "platform/Scheduler.h"

namespace kestrix::platform {

// What is seen comes from the event loop. Until the first answer seen() is empty, and so is problem(); after
// it one of them is not.

// The paired Bluetooth devices that offer a serial port, by name. The scheduler must outlive it.
std::unique_ptr<AccessoryListing> makeBluetoothListing(Scheduler& scheduler);

// The serial ports of this computer.
std::unique_ptr<AccessoryListing> makeSerialListing();

}  // namespace kestrix::platform
