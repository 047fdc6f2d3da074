#pragma once

#include <span>
#include <string>
#include <vector>

#include "live/MainViewController.h"
#include "shell/Screens.h"

namespace kestrix::tour {

// One picture of the tour. Before it the tester comes or goes, then it plays, then the button is pressed.
struct Stop {
    enum class Tester { Stays, On, Off };
    enum class Disk { HasRoom, Full };

    const char* name;      // of the picture file
    const char* scenario;  // what the tester plays; none: nothing
    Tester tester;
    int presses;                // of the record button
    Disk disk = Disk::HasRoom;  // during the presses
};

// Every state of the live screen.
std::span<const Stop> stops();

// The names of all pictures of the tour, in its order: of the live screen, then of the road behind it,
// and of the diagnostics console.
std::vector<std::string> pictures(const std::vector<shell::ScreenRow>& presented = shell::screens());

// Presses the record button as often as the stop says.
void pressRecord(const Stop& stop, live::MainViewController& screen);

}  // namespace kestrix::tour
