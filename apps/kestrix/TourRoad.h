#pragma once

#include <functional>
#include <string>
#include <vector>

#include "shell/AppDelegate.h"
#include "shell/Screens.h"

namespace kestrix::tour {

// What the user does behind the live screen, one thing after the other: looks at the side bars, saves what
// was recorded, looks at the test record.
struct Step {
    std::string name;  // of the picture of it; empty: none is taken
    std::function<void(shell::AppDelegate&)> take;
};

// Behind the last state of the live screen, whose measurements are saved here. Every state of every row is in
// it.
std::vector<Step> road(const std::vector<shell::ScreenRow>& rows = shell::screens());

// Back to the live screen: what lies in front of it goes.
void goHome(shell::AppDelegate& application);

}  // namespace kestrix::tour
