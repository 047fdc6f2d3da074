#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <string>
#include <utility>
#include <variant>

#include "platform/CaptureFile.h"
#include "simulator/Player.h"
#include "simulator/Scenario.h"
#include "tests/flow/faults/FarEnd.h"

namespace kestrix::faults {
namespace {

// A capture or a scenario in a file. It is played by itself, for as long as the file is there.
class PlayedFarEnd final : public FarEnd {
  public:
    PlayedFarEnd(std::string scheme, const std::string& content, std::vector<Bytes> plays)
        : scheme_(std::move(scheme)), plays_(std::move(plays)) {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content.data(), static_cast<qint64>(content.size()));
    }
    std::unique_ptr<platform::AccessorySource> makeSource(platform::Scheduler& scheduler,
                                                          platform::ListenerFactory listeners) override {
        return sourceOf(scheme_ + path().toStdString(), scheduler, std::move(listeners));
    }
    bool isOpen() override { return true; }
    std::size_t send(std::span<const std::uint8_t> bytes) override {
        ADD_FAILURE() << "what it sends is known from the start";
        return bytes.size();
    }
    void end() override { ADD_FAILURE() << "it ends by itself"; }
    void breakOff() override { end(); }
    void leave() override { EXPECT_TRUE(QFile::rename(path(), path() + QStringLiteral(".away"))); }
    void comeBack() override {
        if (!QFile::exists(path())) {
            EXPECT_TRUE(QFile::rename(path() + QStringLiteral(".away"), path()));
        }
    }

    std::vector<Bytes> plays() const override { return plays_; }

  private:
    QString path() const { return folder_.filePath(QStringLiteral("played")); }

    QTemporaryDir folder_;
    std::string scheme_;
    std::vector<Bytes> plays_;
};

std::vector<Bytes> playedBy(const std::string& scenario) {
    auto parsed = simulator::parseScenario(scenario);
    if (const auto* error = std::get_if<simulator::ScenarioError>(&parsed)) {
        ADD_FAILURE() << error->text();
        return {};
    }
    simulator::Player player(std::get<simulator::Scenario>(std::move(parsed)));
    std::vector<Bytes> lines(1);
    while (!player.finished()) {
        const simulator::Emission emission = player.next();
        lines.back().insert(lines.back().end(), emission.bytes.begin(), emission.bytes.end());
        if (emission.closes) lines.emplace_back();
    }
    return lines;
}

}  // namespace

std::unique_ptr<FarEnd> makeReplayFarEnd(const Bytes& capture) {
    std::string content = platform::captureHeaderLine({"tcp://10.0.0.1:4000", "2024-06-03T09:00:00Z"});
    content.append(capture.begin(), capture.end());
    return std::make_unique<PlayedFarEnd>("replay:", content, std::vector<Bytes>{capture});
}

std::unique_ptr<FarEnd> makeSimulatorFarEnd(const std::string& scenario) {
    return std::make_unique<PlayedFarEnd>("simulator:", scenario, playedBy(scenario));
}

}  // namespace kestrix::faults
