#include "apps/common/SimulatorSource.h"

#include <QFile>
#include <QFileInfo>

#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

#include "simulator/BuiltinScenarios.h"
#include "simulator/Player.h"
#include "simulator/Scenario.h"

namespace kestrix::app {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

class SimulatorProducer final : public platform::ByteProducer {
  public:
    SimulatorProducer(simulator::Scenario scenario, std::uint64_t seed, double speed)
        : player_(std::move(scenario), seed), speed_(speed) {}

    bool next(Piece& piece) override {
        if (player_.finished()) return false;
        player_.next(emission_);
        piece.bytes.swap(emission_.bytes);
        piece.closes = emission_.closes;
        piece.wait = std::chrono::milliseconds{0};
        if (speed_ > 0) {
            owed_ += Milliseconds(emission_.wait) / speed_;
            piece.wait = std::chrono::floor<std::chrono::milliseconds>(owed_);
            owed_ -= piece.wait;
        }
        return true;
    }

  private:
    simulator::Player player_;
    simulator::Emission emission_;
    double speed_;
    Milliseconds owed_{0};  // the part of a millisecond that no wait has held yet
};

// The text of a built-in scenario or of a file.
std::optional<std::string> scenarioText(const std::string& scenario, std::string& problem) {
    const std::string_view name = scenario.empty() ? simulator::kDefaultScenario : std::string_view(scenario);
    if (const auto builtin = simulator::builtinScenario(name)) return std::string(*builtin);
    const QString path = QString::fromStdString(scenario);
    if (QFileInfo(path).isDir()) {
        problem = "it is a folder";
        return std::nullopt;
    }
    if (QFileInfo::exists(path) &&
        !QFileInfo(path).isFile()) {  // opening a pipe would wait for its other end
        problem = "it is no regular file";
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        problem =
            "no built-in scenario of that name, and no such file (" + file.errorString().toStdString() + ")";
        return std::nullopt;
    }
    // One byte more than is allowed, so that the parser sees that it is too long.
    return file.read(static_cast<qint64>(simulator::kMaxScenarioBytes) + 1).toStdString();
}

}  // namespace

platform::GeneratedDialer::MakeProducer simulatorProducers(const std::string& scenario, std::uint64_t seed,
                                                           double speed, std::string& problem) {
    const std::optional<std::string> text = scenarioText(scenario, problem);
    if (!text) return nullptr;
    auto parsed = simulator::parseScenario(*text);
    if (const auto* error = std::get_if<simulator::ScenarioError>(&parsed)) {
        problem = error->text();
        return nullptr;
    }
    return [scenario = std::get<simulator::Scenario>(std::move(parsed)), seed, speed](std::string&) {
        return std::make_unique<SimulatorProducer>(scenario, seed, speed);
    };
}

platform::SimulatorOrProblem simulatorSource(platform::AccessoryUri& uri) {
    const auto seed = platform::parseNumber(platform::takeOption(uri, "seed").value_or("1"), 1,
                                            std::numeric_limits<int>::max());
    const auto speed = platform::parsePlaySpeed(platform::takeOption(uri, "speed").value_or("1"));
    if (!seed) return {nullptr, "the seed is not a number from 1 on", true};
    if (!speed) return {nullptr, platform::kWrongPlaySpeed, true};
    platform::SimulatorOrProblem made;
    made.producers = simulatorProducers(uri.target, static_cast<std::uint64_t>(*seed), *speed, made.problem);
    return made;
}

}  // namespace kestrix::app
