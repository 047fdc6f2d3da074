#pragma once

#include <QDir>

#include <string>
#include <vector>

#include "apps/kestrix/TourClock.h"

namespace kestrix::tour {

// The names of the pictures of the diagnostics console, in their order.
std::vector<std::string> consolePictures();

// Shows the console, which is an application of its own, with the built-in tester. No other application of
// this process may be there meanwhile: it would take the bytes. The exit status.
int visitConsole(const QDir& folder, TourClock& clock);

}  // namespace kestrix::tour
