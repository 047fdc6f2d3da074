#pragma once

#include <span>

namespace kestrix::tour {

// One picture of the tour. Before it the tester comes or goes, then it plays, then the button is pressed.
struct Stop {
    enum class Tester { Stays, On, Off };

    const char* name;      // of the picture file
    const char* scenario;  // what the tester plays; none: nothing
    Tester tester;
    int presses;  // of the record button
};

// Every state of the live screen.
std::span<const Stop> stops();

}  // namespace kestrix::tour
