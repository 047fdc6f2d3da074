// The simulated tester and captures through the whole road, flat out and at the tester's own pace.
#include <gtest/gtest.h>

#include <QFile>

#include <algorithm>
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
    // Not there yet, and gone three times: silent for too long, cut off, switched off.
    const auto zeros = [this] { return std::count(stateLog_.begin(), stateLog_.end(), '0'); };
    for (int i = 0; i < 1000 && (zeros() < 4 || !connected()); ++i) scheduler_.advance(milliseconds(100));
    ASSERT_EQ(stateLog_,
              "0110110110"
              "11");
    EXPECT_GT(notUnderstood_, 0U);
    records_ = notUnderstood_ = 0;
    scheduler_.advance(milliseconds(1500));
    EXPECT_GE(records_, 10U);
    EXPECT_EQ(notUnderstood_, 0U);
    EXPECT_EQ(last_.strfunction, "LOW OHM");
}

// Each turn of the event loop ends, so that signals and everybody else get theirs.
TEST_F(SimulatedRoad, AScenarioWhosePiecesHoldNoBytesAndNoWaitFreezesNothing) {
    const QString path = folder_.filePath(QStringLiteral("empty.scenario"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("rate max\nrepeat forever\nfunction earth\nline drop=1\nshow 1 frames\n");
    file.close();
    start("simulator:" + path.toStdString());
    for (int turn = 0; turn < 100; ++turn) ASSERT_TRUE(scheduler_.runOne());
    EXPECT_EQ(records_, 0U);
    EXPECT_FALSE(connected());
}

// At the slowest pace that may be asked for, frames come 2.5 s apart.
TEST_F(SimulatedRoad, TheSlowestTesterStaysConnected) {
    start("simulator:rcd?speed=0.1");
    scheduler_.advance(std::chrono::minutes(1));
    EXPECT_EQ(stateLog_, "011");
    EXPECT_GT(records_, 20U);
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
TEST_F(SimulatedRoad, ManyFramesLeaveTheMemoryAsItWas) {
#ifdef KESTRIX_SANITIZE
    constexpr std::size_t kFrames = 100'000;  // each takes several times as long
#else
    constexpr std::size_t kFrames = 1'000'000;
#endif
    start("simulator:house?speed=max");
    std::size_t before = 0;
    while (records_ < kFrames) {
        scheduler_.runOne();
        if (before == 0 && records_ > 50'000) before = testing::allocatedBytes();
    }
    EXPECT_LE(testing::allocatedBytes(), before + 262'144);
    EXPECT_EQ(notUnderstood_, 0U);
}

}  // namespace
}  // namespace kestrix
