// Two and three testers at once, in random sequences of coming, going, falling silent, noise and half frames:
// whatever happens, the link state and the readings agree with what is on the lines.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "display/Steps.h"
#include "link/BluetoothConnect.h"
#include "link/FrameListener.h"
#include "platform/DialingSource.h"
#include "protocol/HexText.h"
#include "tests/support/FakeDialer.h"
#include "tests/support/FrameBuilder.h"
#include "tests/support/LiteralExtraction.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix {
namespace {

using std::chrono::milliseconds;
using testing::FrameBuilder;
using Random = std::mt19937;
using Time = platform::Scheduler::TimePoint;

#ifdef KESTRIX_SANITIZE
constexpr int kSequences = 2'000;  // each takes several times as long
#else
constexpr int kSequences = 10'000;
#endif
constexpr milliseconds kStep{100};
constexpr int kSteps = 200;
constexpr milliseconds kSilence = platform::DialingSource::kSilenceLimit;
constexpr milliseconds kFrameEvery{300};

// What a tester measures: without a mode set, RCD is the automatic sequence.
constexpr char kRcdSequence = '6';
constexpr char kOtherFunction = '1';
constexpr std::uint8_t kTestRuns = 0x02;  // RCD says it beside its alarm

int upTo(Random& random, int most) {
    return static_cast<int>(random() % static_cast<unsigned>(most + 1));
}

enum class Doing { Away, Silent, Sending, Noise };

// One tester's world: what it does, and what stands on its line. The application's side is a source of its
// own.
struct Tester {
    Doing doing = Doing::Away;
    testing::FakeLine line;
    testing::FakeDialer* dialer = nullptr;
    const platform::AccessorySource* source = nullptr;
    bool newBytes = false;
    bool newEnd = false;
    Time nextFrame{};
    char function = kOtherFunction;
    int framesOfFunction =
        0;  // that are still to come: long enough for trip times, of a whole sequence now and then
    Time sendingSince{};  // whole frames, one after the other
    bool newFrame = false;
    int dials = 0;                       // how often it was dialled when `literal` began to read along
    testing::LiteralExtraction literal;  // half a frame that noise fills up is a whole one
    Time lastTold{};                     // when the event loop told of its last whole frame
};

class World final : public link::BusinessCommunicationDelegate {
  public:
    World(unsigned seed, platform::UserDefaults& defaults)
        : random_(seed),
          testers_(2 + seed % 2),
          connect_(manager_, defaults, [this](milliseconds duration) { block(duration); }) {
        states_ = platform::NotificationCenter::defaultCenter().addObserver(
            link::Orvoblueviewnotification, [this](const platform::Notification& event) {
                state_ = *platform::objectOf<std::string>(event);
                display::linkStateChanged(display_, std::stoi(state_));
            });
        link::BluetoothConnect::bConnectNotified = false;
        link::BluetoothConnect::bDisconnectNotified = false;
        connect_.initBlue();
        connect_.setDelegate(this);
        for (std::size_t i = 0; i < testers_.size(); ++i) {
            auto dialer = std::make_unique<testing::FakeDialer>();
            testers_[i].dialer = dialer.get();
            auto source = std::make_unique<platform::DialingSource>(
                "tester:" + std::to_string(i), std::move(dialer), link::makeFrameListener, scheduler_);
            testers_[i].source = source.get();
            manager_.addSource(std::move(source));
        }
    }
    ~World() override { connect_.allRelease(); }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    void didReceive3820Data(const protocol::MeterReading& record, bool) override {
        ++records_;
        EXPECT_EQ(state_, "1") << "a reading beside state 0";
        display::recordCame(display_, record);
        tripTimes_ += display::showsTripTime(display_, 0) ? 1 : 0;
    }

    void play() {
        for (int step = 0; step < kSteps && !::testing::Test::HasFailure(); ++step) {
            scheduler_.advance(kStep);
            for (Tester& tester : testers_) happen(tester);
            deliver();
            while (waited_) {  // what happened meanwhile is heard first
                waited_ = false;
                scheduler_.runDue();
                deliver();
            }
            check();
        }
    }
    std::size_t records() const { return records_; }
    std::size_t tripTimes() const { return tripTimes_; }

  private:
    Time now() const { return scheduler_.now(); }

    // The main thread is blocked; the testers go on.
    void block(milliseconds duration) {
        EXPECT_EQ(state_, "0");
        scheduler_.stall(duration);
        waited_ = true;
        for (Tester& tester : testers_) happen(tester);
    }

    // What the tester does by itself, whether anybody listens or not.
    void happen(Tester& tester) {
        if (upTo(random_, 39) == 0) change(tester);
        if (tester.doing == Doing::Away || tester.line.channel == nullptr) return;
        if (tester.doing == Doing::Noise)
            put(tester, std::vector<std::uint8_t>(static_cast<std::size_t>(upTo(random_, 30)), 0x7E));
        if (tester.doing != Doing::Sending || now() < tester.nextFrame) return;
        tester.nextFrame = now() + kFrameEvery;
        if (tester.framesOfFunction-- == 0) {
            tester.function = upTo(random_, 1) == 0 ? kRcdSequence : kOtherFunction;
            tester.framesOfFunction = upTo(random_, 20);
        }
        const auto frame = FrameBuilder(tester.function).alarm(kTestRuns).reading(1, 7, 0).bytes();
        if (upTo(random_, 29) == 0) {  // half a frame, and then nothing for a while
            put(tester, {frame.begin(), frame.begin() + 1 + upTo(random_, 30)});
            tester.doing = Doing::Silent;
        } else {
            put(tester, {frame.begin(), frame.end()});
        }
    }
    void change(Tester& tester) {
        const Doing before = tester.doing;
        tester.doing = static_cast<Doing>(upTo(random_, 3));
        if (upTo(random_, 1) == 0) tester.doing = Doing::Sending;
        tester.dialer->line = tester.doing == Doing::Away ? nullptr : &tester.line;
        if (tester.doing == Doing::Away && tester.line.channel != nullptr) tester.newEnd = true;
        if (tester.doing == Doing::Sending && before != Doing::Sending) {
            tester.sendingSince = now();
            tester.nextFrame = now();
        }
        if (before == Doing::Away && upTo(random_, 1) == 0) tester.dialer->peerMayBeBack();
    }
    static void put(Tester& tester, const std::vector<std::uint8_t>& bytes) {
        tester.line.incoming.insert(tester.line.incoming.end(), bytes.begin(), bytes.end());
        tester.newBytes = true;
        if (std::exchange(tester.dials, tester.dialer->dials) != tester.dialer->dials) tester.literal = {};
        std::string hexText;
        protocol::appendHexText(hexText, bytes);
        if (!tester.literal.receive(hexText).empty()) tester.newFrame = true;
    }

    // The event loop tells of it.
    void deliver() {
        for (Tester& tester : testers_) {
            if (std::exchange(tester.newFrame, false)) tester.lastTold = now();
            if (std::exchange(tester.newBytes, false)) tester.line.tellBytes();
            if (std::exchange(tester.newEnd, false)) tester.line.end("the end");
            if (tester.line.channel == nullptr) tester.line.incoming.clear();
        }
        scheduler_.runDue();
    }

    bool readingStands() const { return !display_.first.hidden && !display_.first.value.empty(); }
    bool tripTimeStands() const {
        bool stands = false;
        for (std::size_t row = 0; row < display::kRcdRows; ++row)
            stands = stands || display::showsTripTime(display_, row);
        return stands;
    }

    // The second reading of what must hold, from what stood on the lines alone.
    void check() {
        bool someHeard = false;
        for (const Tester& tester : testers_) {
            const bool heard = tester.line.channel != nullptr && now() - tester.lastTold < kSilence;
            const bool there = tester.source->state() == platform::SearchState::Present;
            if (there) {
                EXPECT_LT(now() - tester.lastTold, kSilence) << "a tester is kept that sends no frames";
            }
            someHeard = someHeard || there;
            const bool sendsForLong =
                tester.doing == Doing::Sending && now() - tester.sendingSince > milliseconds(10'000);
            if (sendsForLong) {
                EXPECT_TRUE(there && heard) << "a tester that sends is left unheard";
            }
        }
        EXPECT_EQ(state_ == "1", someHeard);
        EXPECT_EQ(manager_.connectedAccessories().size(), someHeard ? 1U : 0U);
        EXPECT_FALSE(readingStands() && state_ != "1") << "a reading stands beside state 0";
        EXPECT_FALSE(tripTimeStands() && state_ != "1") << "a trip time stands beside state 0";
        if (state_ == "1") {
            EXPECT_NE(connect_.measuredevice(), nullptr);
            EXPECT_EQ(connect_.measuredevice(), manager_.connectedAccessories().front());
        } else {
            EXPECT_EQ(connect_.measuredevice(), nullptr);
        }
    }

    Random random_;
    testing::ManualScheduler scheduler_;
    std::vector<Tester> testers_;
    platform::AccessoryManager manager_;
    link::BluetoothConnect connect_;
    platform::NotificationCenter::Subscription states_;
    std::string state_;
    display::Display display_;
    bool waited_ = false;
    std::size_t records_ = 0;
    std::size_t tripTimes_ = 0;  // how often the first one of a sequence stood on the display
};

TEST(ManyTesters, TheLinkStateIsOneExactlyWhileTheAnnouncedTesterIsHeard) {
    const QTemporaryDir folder;
    platform::UserDefaults defaults(folder.filePath(QStringLiteral("kestrix.ini")));
    std::size_t records = 0;
    std::size_t tripTimes = 0;
    for (unsigned seed = 0; seed < kSequences && !HasFailure(); ++seed) {
        SCOPED_TRACE("sequence " + std::to_string(seed));
        testing::forgetLogLines();
        World world(seed, defaults);
        world.play();
        records += world.records();
        tripTimes += world.tripTimes();
    }
    EXPECT_GT(records, 10U * kSequences);
    EXPECT_GT(tripTimes, 1U * kSequences);
}

}  // namespace
}  // namespace kestrix
