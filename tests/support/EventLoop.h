#pragma once

#include <functional>

namespace kestrix::testing {

// Turns the event loop until the condition holds. False when it does not hold within 30 s: then something
// hangs.
bool spinUntil(const std::function<bool()>& condition);

}  // namespace kestrix::testing
