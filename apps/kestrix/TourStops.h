#pragma once

#include <span>

namespace kestrix::tour {

// One picture of the tour, and what happens before it, in this order.
struct Stop {
    const char* name;  // of the picture file
    enum class Tester { Stays, On, Off } tester;
    const char* scenario;  // what the tester plays; none: nothing
    int presses;           // of the record button
};

// Every state of the live screen.
std::span<const Stop> stops();

}  // namespace kestrix::tour
