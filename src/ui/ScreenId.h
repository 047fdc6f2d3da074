#pragma once

#include <cstdint>

namespace kestrix::ui {

// Every screen that can be presented by another folder's screen, which does not know its class.
enum class ScreenId : std::uint8_t { MainView, SaveData, BluetoothConnectionHelp };

}  // namespace kestrix::ui
