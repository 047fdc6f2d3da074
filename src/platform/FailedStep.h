#pragma once

#include <cstdint>

namespace kestrix::platform {

// The step on the way to a tester that failed, in the order in which they are taken.
enum class FailedStep : std::uint8_t {
    None,      // nothing has failed yet
    Adapter,   // the machine's own radio or bus is missing or off
    Pairing,   // the tester is not paired, or refuses this machine
    Missing,   // there is nothing of this name: no such port, file or host
    Rights,    // it may not be opened
    Busy,      // another program has it
    Refused,   // the other side said no
    NoAnswer,  // the other side said nothing within the dialer's time limit
    NoBytes,   // the channel was open, but no bytes came
    NoFrames,  // bytes came, but no whole frame of a tester
    Ended,     // the channel was open and ended or failed
    Other,
};

}  // namespace kestrix::platform
