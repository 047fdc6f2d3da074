#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "simulator/Display.h"
#include "simulator/Random.h"
#include "simulator/Scenario.h"

namespace kestrix::simulator {

// Wait this long since the previous emission (the first: since the start), then send the bytes (there may be
// none), and if it closes, end the channel. The wait of the emission after a closing one passes while the
// tester is off; when it is over, a new channel opens.
struct Emission {
    std::chrono::milliseconds wait{0};
    std::vector<std::uint8_t> bytes;
    bool closes = false;
};

// Plays a scenario. The same scenario and seed give the same emissions on every machine. Owns its scenario;
// knows no clock: keeping the waits is the caller's.
class Player {
  public:
    // A scenario without steps is finished at once.
    explicit Player(Scenario scenario, std::uint64_t seed = 1);

    // The next emission. When finished: no wait, no bytes, does not close.
    Emission next();
    // The same, into an emission whose buffer is used again.
    void next(Emission& out);

    // Whether every emission was given; never true for a scenario that repeats for ever.
    bool finished() const noexcept { return finished_; }

  private:
    void playStep(const Step& step, Emission& out);
    void playFrame(const Step& step, std::vector<std::uint8_t>& out);
    void switchOff(const Step& step, Emission& out);
    void playByte(const Step& step, Emission& out);
    void fillReadings(const Step& step, Display& display);
    void nextStep() noexcept;
    std::chrono::milliseconds waitFor(std::chrono::nanoseconds time) noexcept;

    Scenario scenario_;
    Random random_;
    std::size_t step_ = 0;
    std::uint64_t frame_ = 0;  // of the step
    std::uint32_t round_ = 0;
    bool finished_ = false;
    std::chrono::nanoseconds owed_{0};   // part of a millisecond that no wait has held yet
    std::vector<std::uint8_t> pending_;  // the frame that goes out byte by byte
    std::size_t sent_ = 0;               // of pending_
    std::vector<std::uint8_t> scratch_;
    std::optional<Display> last_;                      // what the display showed last: what "hold" keeps
    std::optional<std::chrono::milliseconds> offFor_;  // the channel has ended and opens again after this
};

}  // namespace kestrix::simulator
