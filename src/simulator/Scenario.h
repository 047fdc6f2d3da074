#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "simulator/ByteFaults.h"
#include "simulator/Display.h"
#include "simulator/Motion.h"

namespace kestrix::simulator {

enum class Delivery : std::uint8_t {
    Frames,     // each frame by itself, at the rate
    Burst,      // all frames at once
    Bytewise,   // each byte by itself; a frame takes as long as it does at the rate
    Cut,        // the beginning of a frame, then the channel ends
    Silence,    // nothing for a time
    SwitchOff,  // the channel ends
    Garbage,    // random bytes, at once
};

// One step that sends something or takes time, with all that is needed to play it.
struct Step {
    Delivery delivery = Delivery::Frames;
    std::uint64_t frames = 0;            // Frames, Burst, Bytewise; 1 for Cut
    std::uint32_t bytes = 0;             // Cut, Garbage: how many are sent
    std::chrono::nanoseconds period{0};  // from frame to frame; 0 is as fast as possible
    std::chrono::milliseconds pause{0};  // Silence: its length; Cut, SwitchOff: how long the tester is off
    Display display;                     // the readings' magnitudes come from the motions
    std::array<Motion, kReadings> motions{};
    std::uint16_t mainsNoise = 0;  // volts by which L-PE and L-N wander together
    std::vector<Damage> damages;   // done to the first frame
    LineNoise line;
};

// A scenario as read. Plain data, independent of the text that it came from.
struct Scenario {
    std::vector<Step> steps;                  // at least one sends a frame
    std::optional<std::uint32_t> rounds = 1;  // nothing: for ever
};

struct ScenarioError {
    std::size_t line = 0;  // from 1
    std::string message;   // one sentence without the line: "unknown function 'FOO'"

    std::string text() const;  // "line 12: unknown function 'FOO'"
};

// Bounds that keep any text harmless.
inline constexpr std::size_t kMaxScenarioBytes = std::size_t{256} * 1024;
inline constexpr std::size_t kMaxSteps = 5000;
inline constexpr std::uint64_t kMaxFrames = 1'000'000'000;  // of one step
inline constexpr std::uint64_t kMaxBurst = 1000;            // frames
inline constexpr std::uint32_t kMaxGarbage = 65536;         // bytes
inline constexpr std::chrono::seconds kMaxDuration{24 * 60 * 60};
inline constexpr double kMinRate = 0.1;  // frames a second
inline constexpr double kMaxRate = 1000;
inline constexpr std::uint32_t kMaxRounds = 1'000'000;
inline constexpr std::size_t kMaxDamages = 16;  // of one frame

// Reads a scenario text (UTF-8; docs/scenarios.md tells its language). Takes any bytes, never throws for
// what they hold, and stops at the first error.
std::variant<Scenario, ScenarioError> parseScenario(std::string_view text);

}  // namespace kestrix::simulator
