#include "simulator/Player.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "simulator/FrameEncoder.h"
#include "simulator/PowerOfTen.h"

namespace kestrix::simulator {

namespace {

constexpr double kMagnitudeLimit = 65535;

void setReading(Reading& reading, const Motion& motion, double value) {
    double digits = std::clamp(std::round(value), -kMagnitudeLimit, kMagnitudeLimit);
    const bool negative = digits < 0;
    if (motion.sign == SignRule::Unsigned) {
        digits = std::max(digits, 0.0);
    } else {
        reading.marked = negative != (motion.sign == SignRule::Reversed);
    }
    reading.magnitude = static_cast<std::uint16_t>(std::abs(digits));
}

std::uint16_t wander(std::uint16_t volts, int by) {
    return static_cast<std::uint16_t>(std::clamp(volts + by, 0, static_cast<int>(kMagnitudeLimit)));
}

}  // namespace

Player::Player(Scenario scenario, std::uint64_t seed) : scenario_(std::move(scenario)), random_(seed) {
    finished_ = scenario_.steps.empty() || scenario_.rounds == 0U;
}

Emission Player::next() {
    Emission emission;
    next(emission);
    return emission;
}

void Player::next(Emission& out) {
    out.wait = std::chrono::milliseconds{0};
    out.bytes.clear();
    out.closes = false;
    if (finished_) return;
    if (offFor_) {
        out.wait = *std::exchange(offFor_, std::nullopt);
        return;
    }
    playStep(scenario_.steps[step_], out);
}

void Player::playStep(const Step& step, Emission& out) {
    switch (step.delivery) {
        case Delivery::Frames:
            out.wait = waitFor(step.period);
            playFrame(step, out.bytes);
            if (frame_ == step.frames) nextStep();
            return;
        case Delivery::Burst:
            out.wait = waitFor(step.period);
            while (frame_ < step.frames) playFrame(step, out.bytes);
            return nextStep();
        case Delivery::Bytewise:
            return playByte(step, out);
        case Delivery::Cut:
            out.wait = waitFor(step.period);
            playFrame(step, out.bytes);
            out.bytes.resize(std::min<std::size_t>(out.bytes.size(), step.bytes));
            return switchOff(step, out);
        case Delivery::Silence:
            out.wait = step.pause;
            return nextStep();
        case Delivery::SwitchOff:
            return switchOff(step, out);
        case Delivery::Garbage:
            out.bytes.resize(step.bytes);
            for (std::uint8_t& byte : out.bytes) byte = random_.byte();
            return nextStep();
    }
}

void Player::switchOff(const Step& step, Emission& out) {
    out.closes = true;
    offFor_ = step.pause;
    nextStep();
}

void Player::playFrame(const Step& step, std::vector<std::uint8_t>& out) {
    Display display = step.display;
    fillReadings(step, display);
    const Frame frame = encodeFrame(display);
    const bool first = frame_++ == 0;
    if (step.line.clean() && (step.damages.empty() || !first)) {
        out.insert(out.end(), frame.begin(), frame.end());
        return;
    }
    scratch_.assign(frame.begin(), frame.end());
    if (first) {
        for (const Damage& fault : step.damages) damage(scratch_, fault);
    }
    sendThrough(step.line, scratch_, random_, out);
}

void Player::playByte(const Step& step, Emission& out) {
    if (sent_ == pending_.size()) {
        pending_.clear();
        sent_ = 0;
        playFrame(step, pending_);
    }
    // A frame that was lost as a whole still takes its time.
    const auto pieces = static_cast<std::int64_t>(std::max<std::size_t>(pending_.size(), 1));
    const auto piece = static_cast<std::int64_t>(sent_);
    out.wait = waitFor(step.period * (piece + 1) / pieces - step.period * piece / pieces);
    if (!pending_.empty()) out.bytes.push_back(pending_[sent_++]);
    if (frame_ == step.frames && sent_ == pending_.size()) nextStep();
}

void Player::fillReadings(const Step& step, Display& display) {
    if (display.hold && last_ && last_->function == display.function) {
        display.readings = last_->readings;
        display.wireA = last_->wireA;
        display.wireB = last_->wireB;
        return;
    }
    std::array<double, kReadings> values{};
    for (std::size_t i = 0; i < kReadings; ++i) {
        const Motion& motion = step.motions[i];
        values[i] = valueAt(motion, frame_);
        if (motion.noise > 0) values[i] += random_.wobble(motion.noise);
    }
    if (step.mainsNoise > 0) {
        const double volts = std::round(random_.wobble(step.mainsNoise));
        const int by = static_cast<int>(volts);
        display.wireB = wander(display.wireB, by);
        if (display.thirdIsLinePe) {
            values[2] += volts * powerOfTen(display.readings[2].decimals);
        } else {
            display.wireA = wander(display.wireA, by);
        }
    }
    for (std::size_t i = 0; i < kReadings; ++i) {
        setReading(display.readings[i], step.motions[i], values[i]);
    }
    last_ = display;
}

void Player::nextStep() noexcept {
    frame_ = 0;
    if (++step_ < scenario_.steps.size()) return;
    step_ = 0;
    if (!scenario_.rounds) return;
    finished_ = ++round_ >= *scenario_.rounds;
}

std::chrono::milliseconds Player::waitFor(std::chrono::nanoseconds time) noexcept {
    owed_ += time;
    const auto wait = std::chrono::floor<std::chrono::milliseconds>(owed_);
    owed_ -= wait;
    return wait;
}

}  // namespace kestrix::simulator
