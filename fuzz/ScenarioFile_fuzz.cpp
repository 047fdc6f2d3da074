#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <variant>

#include "simulator/FrameEncoder.h"
#include "simulator/Player.h"
#include "simulator/Scenario.h"

// Any text at all either is a scenario, whose emissions stay within their bounds, or has an error with a
// line.

using namespace kestrix::simulator;

namespace {

constexpr int kEmissions = 2000;

void require(bool holds) {
    if (!holds) __builtin_trap();
}

// Noise and damage can each add bytes to a frame, but not more than one for each byte and each damage.
constexpr std::size_t kMostOfAFrame = 2 * (kFrameBytes + kMaxDamages);

void checkEmission(const Emission& emission) {
    require(emission.wait >= std::chrono::milliseconds{0} && emission.wait <= kMaxDuration);
    require(emission.bytes.size() <= kMaxBurst * kMostOfAFrame);
}

void play(Scenario scenario) {
    require(!scenario.steps.empty() && scenario.steps.size() <= kMaxSteps);
    Player first{scenario, 1};
    Player second{std::move(scenario), 1};
    Emission emission;
    std::size_t sent = 0;
    for (int i = 0; i < kEmissions && sent < 1'000'000 && !first.finished(); ++i) {
        first.next(emission);
        checkEmission(emission);
        const Emission same = second.next();
        require(same.wait == emission.wait && same.bytes == emission.bytes && same.closes == emission.closes);
        require(first.finished() == second.finished());
        sent += emission.bytes.size();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text{reinterpret_cast<const char*>(data), size};
    auto result = parseScenario(text);
    if (auto* scenario = std::get_if<Scenario>(&result)) {
        play(std::move(*scenario));
    } else {
        const auto& error = std::get<ScenarioError>(result);
        require(error.line >= 1 && error.line <= size + 1);
        require(!error.message.empty() && error.message.size() < 300);
    }
    return 0;
}
