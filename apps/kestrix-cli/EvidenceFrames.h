#pragma once

#include <optional>

#include "display/MeasuredFrames.h"
#include "storage/Evidence.h"

namespace kestrix::cli {

// The frames as the display keeps them; none when one of them is no whole frame.
std::optional<display::MeasuredFrames> framesOf(const storage::Evidence& evidence);

}  // namespace kestrix::cli
