#pragma once

#include <cstdint>
#include <unordered_map>

#include "storage/Evidence.h"

namespace kestrix::cli {

// What a verification knows of one measurement: what the chain says of it, and whether its row is there.
struct MeasurementState {
    enum class Derived : std::uint8_t { NotYet, Same, Differs };

    std::int64_t place = 0;     // in the chain, of its latest event; 0: it has none
    storage::Sha256 latest{};   // its row's digest behind that
    std::int64_t recorded = 0;  // the place of the event with its frames; 0: there is none
    storage::Sha256 first{};    // its row's digest then
    storage::Origin origin = storage::Origin::Measured;
    Derived derived = Derived::NotYet;  // from its frames, beside its row
    bool filed = false;
    bool deleted = false;
    bool there = false;
};

// By dataId.
using MeasurementStates = std::unordered_map<std::int64_t, MeasurementState>;

}  // namespace kestrix::cli
