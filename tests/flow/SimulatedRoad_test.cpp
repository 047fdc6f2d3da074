// The simulated tester and captures through the whole road, flat out and at the tester's own pace.
#include <gtest/gtest.h>

#include <QFile>

#include <set>
#include <string>
#include <variant>

#include "platform/CaptureFile.h"
#include "simulator/BuiltinScenarios.h"
#include "simulator/FrameEncoder.h"
#include "simulator/Player.h"
#include "tests/flow/LinkFixture.h"
#include "tests/support/ProcessState.h"

namespace kestrix {
namespace {

using std::chrono::milliseconds;

class SimulatedRoad : public testing::LinkFixture {
  protected:
    void didReceive3820Data(const protocol::MeterReading& record, bool success) override {
        LinkFixture::didReceive3820Data(record, success);
        functions_.insert(record.strfunction);
        if (record.iFunction == 0) ++notUnderstood_;
    }
    std::set<std::string> functions_;
    std::size_t notUnderstood_ = 0;
};

TEST_F(SimulatedRoad, TheRoundThroughAHouseShowsEveryFunction) {
    start("simulator:");
    scheduler_.advance(std::chrono::minutes(3));
    EXPECT_EQ(notUnderstood_, 0U);
    for (const char* function : {"VOLTAGE/PHASE,Voltage", "VOLTAGE/PHASE,Phase", "LOW OHM", "INSULATION",
                                 "LOOP/PFC", "X1/2", "X1", "X5", "Auto", "EARTH"}) {
        EXPECT_EQ(functions_.count(function), 1U) << function;
    }
}

TEST_F(SimulatedRoad, TheTesterSendsAboutFourFramesASecond) {
    start("simulator:");
    scheduler_.advance(milliseconds(2000));
    const std::size_t before = records_;
    scheduler_.advance(milliseconds(10'000));
    EXPECT_NEAR(static_cast<double>(records_ - before), 40, 4);
}

TEST_F(SimulatedRoad, TheFaultsScenarioDropsTheLinkAndEndsWithCleanFrames) {
    start("simulator:faults");
    scheduler_.advance(std::chrono::minutes(5));
    EXPECT_NE(stateLog_.find("110110"), std::string::npos) << stateLog_;
    EXPECT_GT(records_, 100U);
}

TEST_F(SimulatedRoad, ACaptureReplaysToTheRecordsOfItsFrames) {
    auto scenario = simulator::parseScenario(*simulator::builtinScenario("rcd-auto"));
    simulator::Player player(std::get<simulator::Scenario>(std::move(scenario)));
    QByteArray bytes =
        QByteArray::fromStdString(platform::captureHeaderLine({"simulator:", "2026-11-21T05:00:00Z"}));
    std::size_t frames = 0;
    for (int i = 0; i < 200; ++i) {
        const simulator::Emission emission = player.next();
        if (emission.bytes.size() == simulator::kFrameBytes) ++frames;
        bytes.append(reinterpret_cast<const char*>(emission.bytes.data()),
                     static_cast<qsizetype>(emission.bytes.size()));
    }
    const QString path = folder_.filePath(QStringLiteral("round.kxc"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
    file.close();

    start("replay:" + path.toStdString() + "?speed=max");
    scheduler_.advance(milliseconds(1));
    EXPECT_EQ(records_, frames);
    EXPECT_EQ(functions_, std::set<std::string>{"Auto"});
}

TEST_F(SimulatedRoad, TheSameSeedGivesTheSameRecords) {
    start("simulator:house?seed=7");
    scheduler_.advance(milliseconds(30'000));
    const protocol::MeterReading first = last_;
    const std::size_t count = records_;
    ASSERT_GT(count, 100U);

    connect_.allRelease();
    link::BluetoothConnect::bConnectNotified = false;
    testing::ManualScheduler other;
    platform::AccessoryManager manager;
    link::BluetoothConnect connect(manager, defaults_, [](milliseconds) {});
    records_ = 0;
    connect.initBlue();
    connect.setDelegate(this);
    manager.addSource(platform::makeAccessorySource("simulator:house?seed=7", other, app::simulatorSource,
                                                    link::makeFrameListener)
                          .source);
    other.advance(milliseconds(30'000));
    EXPECT_EQ(records_, count);
    EXPECT_EQ(last_, first);
    connect.allRelease();
}

// The long one is a program of its own (bench/soak); this one shows on every change that nothing piles up.
TEST_F(SimulatedRoad, AMillionFramesLeaveTheMemoryAsItWas) {
    start("simulator:house?speed=max");
    std::size_t before = 0;
    while (records_ < 1'000'000) {
        scheduler_.runOne();
        if (before == 0 && records_ > 50'000) before = testing::allocatedBytes();
    }
    EXPECT_LE(testing::allocatedBytes(), before + 262'144);
    EXPECT_EQ(notUnderstood_, 0U);
}

}  // namespace
}  // namespace kestrix
