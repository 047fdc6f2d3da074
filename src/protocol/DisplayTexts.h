#pragma once

#include <cstdint>

#include "protocol/MeterReading.h"

namespace kestrix::protocol {

// Derives the texts that the display shows, the connection picture and the function's name from a decoded
// record. status: the frame's status byte, which selects the picture. A record with iFunction 0 gets empty
// texts.
void deriveTexts(std::uint8_t status, MeterReading& record);

}  // namespace kestrix::protocol
