#include "simulator/ScenarioBuilder.h"

#include <cmath>
#include <utility>

#include "simulator/Words.h"

namespace kestrix::simulator {

void ScenarioBuilder::choose(Function function) {
    chosen_ = true;
    display = Display{};
    display.function = function;
    motions = {};
    mainsNoise = 0;
    touchLimit = false;
    tripCurrent.clear();
    const auto readings = rulesOf(function).readings;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        display.readings[i].noData = true;
        display.readings[i].unitCode = readings[i].units.front().code;
        motions[i].sign = readings[i].sign;
    }
}

const FunctionRules& ScenarioBuilder::rules() const {
    if (!chosen_) throw StatementError{"no function is chosen yet"};
    return rulesOf(display.function);
}

void ScenarioBuilder::setRate(std::optional<double> framesPerSecond) {
    fast_ = !framesPerSecond;
    if (framesPerSecond) {
        period_ = std::chrono::nanoseconds{static_cast<std::int64_t>(std::round(1e9 / *framesPerSecond))};
    }
}

void ScenarioBuilder::setRounds(std::optional<std::uint32_t> rounds) {
    if (std::exchange(roundsGiven_, true)) throw StatementError{"repeat is given twice"};
    scenario_.rounds = rounds;
}

void ScenarioBuilder::addDamage(const Damage& damage) {
    if (damages_.size() == kMaxDamages) {
        throw StatementError{"more than " + std::to_string(kMaxDamages) + " damages to one frame"};
    }
    damages_.push_back(damage);
}

void ScenarioBuilder::addFrames(Delivery delivery, std::uint64_t frames) {
    Step step;
    step.delivery = delivery;
    step.frames = frames;
    appendFrames(std::move(step));
}

void ScenarioBuilder::addCut(std::uint32_t bytes, std::chrono::milliseconds off) {
    Step step;
    step.delivery = Delivery::Cut;
    step.frames = 1;
    step.bytes = bytes;
    step.pause = off;
    appendFrames(std::move(step));
}

void ScenarioBuilder::addPause(Delivery delivery, std::chrono::milliseconds pause) {
    Step step;
    step.delivery = delivery;
    step.pause = pause;
    append(std::move(step));
}

void ScenarioBuilder::addGarbage(std::uint32_t bytes) {
    Step step;
    step.delivery = Delivery::Garbage;
    step.bytes = bytes;
    append(std::move(step));
}

void ScenarioBuilder::appendFrames(Step step) {
    rules();
    sendsFrames_ = true;
    const std::uint64_t frames = step.frames;
    step.period = fast_ ? std::chrono::nanoseconds{0} : period_;
    step.display = display;
    step.motions = motions;
    step.mainsNoise = mainsNoise;
    step.line = line;
    step.damages = std::exchange(damages_, {});
    append(std::move(step));
    for (Motion& motion : motions) motion.elapsed += frames;
}

void ScenarioBuilder::append(Step step) {
    if (scenario_.steps.size() == kMaxSteps) {
        throw StatementError{"more than " + std::to_string(kMaxSteps) + " steps"};
    }
    scenario_.steps.push_back(std::move(step));
}

Scenario ScenarioBuilder::finish() {
    if (!damages_.empty()) throw StatementError{"no frame follows that the damage could be done to"};
    if (!sendsFrames_) throw StatementError{"the scenario sends no frame"};
    return std::move(scenario_);
}

}  // namespace kestrix::simulator
