#pragma once

#include <string>

namespace kestrix::platform {

// "AA:BB:CC:DD:EE:FF" from an address in upper or lower case; empty when it is none.
std::string bluetoothAddress(const std::string& text);

}  // namespace kestrix::platform
