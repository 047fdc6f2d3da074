#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/FunctionRules.h"
#include "simulator/Scenario.h"

namespace kestrix::simulator {

// What the statements so far have made of the tester: each statement changes it, and those that send
// something or take time append a step with a copy of it.
class ScenarioBuilder {
  public:
    Display display;
    std::array<Motion, kReadings> motions{};
    std::uint16_t mainsNoise = 0;  // volts
    std::string tripCurrent;       // mA, as written; empty: the raw setting stands
    bool touchLimit = false;       // the loop function shows one
    LineNoise line;

    // Chooses a function and clears the display: dashes everywhere, all flags off.
    void choose(Function function);
    // The rules of the chosen function; throws StatementError when there is none yet.
    const FunctionRules& rules() const;

    // Frames a second, or as fast as possible, which counts durations as before.
    void setRate(std::optional<double> framesPerSecond);
    // The time of a frame by which durations are counted.
    std::chrono::nanoseconds framePeriod() const { return period_; }

    void setRounds(std::optional<std::uint32_t> rounds);
    void addDamage(const Damage& damage);  // to the frame that is sent next

    void addFrames(Delivery delivery, std::uint64_t frames);
    void addCut(std::uint32_t bytes, std::chrono::milliseconds off);
    void addPause(Delivery delivery, std::chrono::milliseconds pause);
    void addGarbage(std::uint32_t bytes);

    // The scenario; throws StatementError when no frame is ever sent, or damage waits for one in vain.
    Scenario finish();

  private:
    void append(Step step);
    void appendFrames(Step step);

    bool chosen_ = false;
    bool fast_ = false;
    bool roundsGiven_ = false;
    bool sendsFrames_ = false;
    std::chrono::nanoseconds period_{250'000'000};
    std::vector<Damage> damages_;
    Scenario scenario_;
};

}  // namespace kestrix::simulator
