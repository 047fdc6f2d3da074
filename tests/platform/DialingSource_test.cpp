#include "platform/DialingSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/FakeDialer.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;
using testing::FakeDialer;
using testing::FakeLine;
using Bytes = std::vector<std::uint8_t>;
using Log = std::vector<std::string>;

class DialingSourceTest : public ::testing::Test, public AccessorySourceObserver {
  protected:
    void appeared(const AccessoryPtr& accessory) override {
        log_.push_back("appeared");
        accessory_ = accessory;
        if (opensSession_)
            session_ = accessory->opener->openChannel(*accessory, accessory->protocolStrings.front());
        if (session_)
            session_->events = {[this] { readSession(); }, [this] { ++spaces_; },
                                [this](const std::string& why) { log_.push_back("closed: " + why); }};
    }
    void disappeared(const AccessoryPtr& accessory) override {
        EXPECT_EQ(accessory, accessory_);
        log_.push_back("disappeared");
    }
    void readSession() {
        std::array<std::uint8_t, 16> buffer;
        std::ptrdiff_t count = 0;
        while ((count = session_->read(buffer.data(), buffer.size())) > 0)
            received_.insert(received_.end(), buffer.begin(), buffer.begin() + count);
    }
    void start() {
        source_.start(*this);
        scheduler_.runDue();
    }

    testing::ManualScheduler scheduler_;
    FakeLine line_;
    FakeDialer* dialer_ = new FakeDialer;
    DialingSource source_{"fake:tester", std::unique_ptr<Dialer>(dialer_), makeAnyByteListener, scheduler_};
    Log log_;
    AccessoryPtr accessory_;
    bool opensSession_ = true;
    std::unique_ptr<ByteChannel> session_;
    Bytes received_;
    int spaces_ = 0;
};

TEST_F(DialingSourceTest, DialsFromTheEventLoopOnceItIsStarted) {
    source_.start(*this);
    EXPECT_EQ(dialer_->dials, 0);
    scheduler_.runDue();
    EXPECT_EQ(dialer_->dials, 1);
}

TEST_F(DialingSourceTest, FailedDialsAreTriedAgainAfterHalfASecondGrowingToFive) {
    start();
    std::vector<int> dialsAfterHalfSeconds;
    for (int i = 0; i < 50; ++i) {
        const int before = dialer_->dials;
        scheduler_.advance(milliseconds(500));
        if (dialer_->dials > before) dialsAfterHalfSeconds.push_back(i + 1);
    }
    EXPECT_EQ(dialsAfterHalfSeconds, (std::vector<int>{1, 3, 7, 15, 25, 35, 45}));
    EXPECT_EQ(source_.problem(), "nobody there");
    EXPECT_EQ(source_.state(), SearchState::Waiting);
}

TEST_F(DialingSourceTest, ADialWithoutAnAnswerIsGivenUpAfterFiveSeconds) {
    dialer_->answersAtOnce = false;
    start();
    scheduler_.advance(milliseconds(4999));
    EXPECT_TRUE(dialer_->dialing());
    scheduler_.advance(milliseconds(1));
    EXPECT_FALSE(dialer_->dialing());
    EXPECT_EQ(source_.problem(), "no answer");
    scheduler_.advance(milliseconds(500));
    EXPECT_EQ(dialer_->dials, 2);
}

TEST_F(DialingSourceTest, APeerThatMayBeBackIsDialledAtOnce) {
    start();
    dialer_->line = &line_;
    dialer_->peerMayBeBack();
    EXPECT_EQ(dialer_->dials, 2);
    EXPECT_EQ(source_.state(), SearchState::Listening);
    dialer_->peerMayBeBack();
    EXPECT_EQ(dialer_->dials, 2);
}

TEST_F(DialingSourceTest, TheTesterAppearsWithItsFirstByteWhichTheSessionReceives) {
    dialer_->line = &line_;
    start();
    EXPECT_EQ(log_, Log{});
    line_.receive(Bytes{1, 2, 3});
    EXPECT_EQ(log_, Log{"appeared"});
    EXPECT_EQ(received_, (Bytes{1, 2, 3}));
    EXPECT_NE(accessory_->connectionId, 0U);
    EXPECT_EQ(accessory_->name, "fake:tester");
    EXPECT_FALSE(accessory_->protocolStrings.empty());
    EXPECT_EQ(source_.state(), SearchState::Present);
    EXPECT_EQ(source_.problem(), "");
}

TEST_F(DialingSourceTest, BytesThatCameBeforeTheDialEndedCountToo) {
    dialer_->line = &line_;
    line_.incoming = {4, 5};
    start();
    scheduler_.runDue();
    EXPECT_EQ(received_, (Bytes{4, 5}));
}

TEST_F(DialingSourceTest, AnOpenChannelWithoutBytesIsNoTester) {
    dialer_->line = &line_;
    start();
    scheduler_.advance(milliseconds(2999));
    EXPECT_EQ(source_.state(), SearchState::Listening);
    scheduler_.advance(milliseconds(1));
    EXPECT_EQ(source_.state(), SearchState::Waiting);
    EXPECT_EQ(source_.problem(), "connected, but no bytes come");
    EXPECT_EQ(log_, Log{});
    EXPECT_EQ(line_.closeCalls, 1);
    scheduler_.runDue();
    EXPECT_EQ(line_.channel, nullptr);
}

TEST_F(DialingSourceTest, ThreeSecondsOfSilenceAreADisconnect) {
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1});
    scheduler_.advance(milliseconds(2999));
    EXPECT_EQ(log_, Log{"appeared"});
    scheduler_.advance(milliseconds(1));
    EXPECT_EQ(log_, (Log{"appeared", "closed: silent for 3 s", "disappeared"}));
    EXPECT_EQ(line_.closeCalls, 1);
}

TEST_F(DialingSourceTest, EveryByteStartsTheSilenceAnew) {
    dialer_->line = &line_;
    start();
    for (int i = 0; i < 10; ++i) {
        line_.receive(Bytes{1});
        scheduler_.advance(milliseconds(2900));
    }
    EXPECT_EQ(log_, Log{"appeared"});
    scheduler_.advance(milliseconds(100));
    EXPECT_EQ(log_.back(), "disappeared");
}

TEST_F(DialingSourceTest, AClosedChannelIsADisconnectAndIsDialledAgain) {
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1});
    const std::uint32_t firstId = accessory_->connectionId;
    line_.end("broken pipe");
    EXPECT_EQ(log_, (Log{"appeared", "closed: broken pipe", "disappeared"}));
    EXPECT_EQ(source_.problem(), "broken pipe");
    scheduler_.advance(milliseconds(500));
    line_.receive(Bytes{2});
    EXPECT_EQ(log_.back(), "appeared");
    EXPECT_NE(accessory_->connectionId, firstId);
    EXPECT_EQ(received_, (Bytes{1, 2}));
}

TEST_F(DialingSourceTest, BytesBeforeTheEndOfTheChannelStillArrive) {
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1});
    line_.incoming = {2, 3};
    line_.end("end");
    EXPECT_EQ(received_, (Bytes{1, 2, 3}));
    EXPECT_EQ(log_.back(), "disappeared");
}

TEST_F(DialingSourceTest, AfterATesterWasThereTheRetriesStartSmallAgain) {
    start();
    scheduler_.advance(milliseconds(20'000));
    dialer_->line = &line_;
    scheduler_.advance(milliseconds(5000));
    line_.receive(Bytes{1});
    dialer_->line = nullptr;
    const int before = dialer_->dials;
    line_.end("end");
    scheduler_.advance(milliseconds(500));
    EXPECT_EQ(dialer_->dials, before + 1);
}

TEST_F(DialingSourceTest, WithoutASessionTheBytesAreDroppedAndTheTesterStays) {
    opensSession_ = false;
    dialer_->line = &line_;
    start();
    for (int i = 0; i < 5; ++i) {
        line_.receive(Bytes(1000, 7));
        EXPECT_TRUE(line_.incoming.empty());
        scheduler_.advance(milliseconds(2000));
    }
    EXPECT_EQ(log_, Log{"appeared"});
}

TEST_F(DialingSourceTest, ASessionOpenedLaterReceivesOnlyWhatComesThen) {
    opensSession_ = false;
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1, 2});
    session_ = source_.openChannel(*accessory_, accessory_->protocolStrings.front());
    ASSERT_NE(session_, nullptr);
    session_->events.bytesAvailable = [this] { readSession(); };
    line_.receive(Bytes{3});
    EXPECT_EQ(received_, Bytes{3});
}

TEST_F(DialingSourceTest, TheSessionWritesToTheChannelAndHearsOfItsSpace) {
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1});
    EXPECT_TRUE(session_->hasSpaceAvailable());
    EXPECT_EQ(session_->write(Bytes{7, 8}), 2);
    EXPECT_EQ(line_.written, (Bytes{7, 8}));
    line_.room = 0;
    EXPECT_FALSE(session_->hasSpaceAvailable());
    const int before = spaces_;
    line_.makeRoom(5);
    EXPECT_EQ(spaces_, before + 1);
}

TEST_F(DialingSourceTest, AClosedSessionReadsAndWritesNothingAndTheTesterStays) {
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1});
    session_->close();
    std::uint8_t byte = 0;
    EXPECT_EQ(session_->read(&byte, 1), -1);
    EXPECT_EQ(session_->write(Bytes{1}), -1);
    EXPECT_FALSE(session_->hasSpaceAvailable());
    line_.receive(Bytes{2});
    EXPECT_EQ(received_, Bytes{1});
    EXPECT_EQ(source_.state(), SearchState::Present);
}

TEST_F(DialingSourceTest, AnAccessoryThatHasGoneIsRefused) {
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1});
    const AccessoryPtr old = accessory_;
    line_.end("end");
    EXPECT_EQ(old->opener, nullptr);
    EXPECT_EQ(source_.openChannel(*old, old->protocolStrings.front()), nullptr);
}

TEST_F(DialingSourceTest, AnUnknownProtocolIsRefused) {
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1});
    EXPECT_EQ(source_.openChannel(*accessory_, "printer"), nullptr);
}

TEST_F(DialingSourceTest, StoppingReportsTheTesterGoneAndDialsNoMore) {
    dialer_->line = &line_;
    start();
    line_.receive(Bytes{1});
    source_.stop();
    EXPECT_EQ(log_.back(), "disappeared");
    EXPECT_EQ(source_.state(), SearchState::Stopped);
    scheduler_.advance(milliseconds(60'000));
    EXPECT_EQ(dialer_->dials, 1);
    source_.start(*this);
    scheduler_.runDue();
    EXPECT_EQ(dialer_->dials, 2);
}

// A frame, in these tests: a byte above 0x80. The bytes since the last one are undecided, four at most.
class HighByteListener final : public Listener {
  public:
    std::size_t hear(std::span<const std::uint8_t> bytes) override {
        std::size_t frames = 0;
        for (const std::uint8_t byte : bytes) {
            since_ = byte > 0x80 ? 0 : std::min<std::size_t>(since_ + 1, 4);
            if (byte > 0x80) ++frames;
        }
        return frames;
    }
    std::size_t undecided() const override { return since_; }

  private:
    std::size_t since_ = 0;
};

class FrameHearingSource : public DialingSourceTest {
  protected:
    FrameHearingSource() { made_->line = &line_; }
    void start() {
        hearing_.start(*this);
        scheduler_.runDue();
    }
    FakeDialer* made_ = new FakeDialer;
    DialingSource hearing_{"fake:hearing", std::unique_ptr<Dialer>(made_),
                           [] { return std::make_unique<HighByteListener>(); }, scheduler_};
};

TEST_F(FrameHearingSource, NoiseIsNoTesterAndItsStepIsNoFrames) {
    start();
    for (int i = 0; i < 29; ++i) {
        line_.receive(Bytes(100, 7));
        scheduler_.advance(milliseconds(100));
    }
    EXPECT_EQ(hearing_.state(), SearchState::Listening);
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoFrames);
    scheduler_.advance(milliseconds(100));
    EXPECT_EQ(hearing_.state(), SearchState::Waiting);
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoFrames);
    EXPECT_EQ(hearing_.problem(), "bytes come, but no valid frame");
    EXPECT_EQ(log_, Log{});
    scheduler_.advance(milliseconds(500));
    EXPECT_EQ(hearing_.state(), SearchState::Listening);
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoFrames) << "until it is known that none come any more";
    scheduler_.advance(DialingSource::kSilenceLimit);
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoBytes);
}

TEST_F(FrameHearingSource, TheBytesByWhichItJudgedAreTheSessionsFirst) {
    start();
    line_.receive(Bytes(1000, 1));
    line_.receive(Bytes{2, 3});
    line_.receive(Bytes{4, 0x90, 5});
    EXPECT_EQ(received_, (Bytes{1, 1, 2, 3, 4, 0x90})) << "5 may be the beginning of a frame";
    line_.receive(Bytes{0x90});
    EXPECT_EQ(received_, (Bytes{1, 1, 2, 3, 4, 0x90, 5, 0x90}));
}

TEST_F(FrameHearingSource, AFrameThatIsNotWholeGoesWithItsTester) {
    start();
    line_.receive(Bytes{0x90, 5});
    line_.channel->events.closed("gone");
    readSession();
    EXPECT_EQ(received_, Bytes{0x90});
}

TEST_F(FrameHearingSource, ATesterWhoseLineTurnsToNoiseHasGoneThreeSecondsAfterItsLastFrame) {
    start();
    line_.receive(Bytes{0x90});
    for (int i = 0; i < 29; ++i) {
        scheduler_.advance(milliseconds(100));
        line_.receive(Bytes{1, 2, 3});
    }
    EXPECT_EQ(log_, Log{"appeared"});
    scheduler_.advance(milliseconds(100));
    EXPECT_EQ(log_, (Log{"appeared", "closed: no valid frame for 3 s", "disappeared"}));
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoFrames);
}

TEST_F(FrameHearingSource, OneThatIsHeldBackIsStillHeardAndGoesWhenItFallsSilent) {
    opensSession_ = false;
    start();
    for (int i = 0; i < 10; ++i) {
        line_.receive(Bytes{0x90, 1, 2});
        scheduler_.advance(milliseconds(2000));
    }
    EXPECT_EQ(log_, Log{"appeared"});
    scheduler_.advance(milliseconds(1000));
    EXPECT_EQ(log_, (Log{"appeared", "disappeared"}));
}

// The event loop was held up; the bytes wait in the line, and their event comes behind the timer.
TEST_F(FrameHearingSource, AMainThreadThatWasBusyForFourSecondsLosesNobody) {
    start();
    line_.receive(Bytes{0x90});
    line_.incoming = {1, 2, 0x91};
    scheduler_.stall(milliseconds(4000));
    scheduler_.runDue();
    EXPECT_EQ(log_, Log{"appeared"});
    EXPECT_EQ(received_, (Bytes{0x90, 1, 2, 0x91}));
    scheduler_.stall(milliseconds(4000));  // and this time nothing came
    scheduler_.runDue();
    EXPECT_EQ(log_.back(), "disappeared");
}

TEST_F(FrameHearingSource, WhatCameIsHeardInTheTurnBehindTheTimer) {
    start();
    line_.receive(Bytes{0x90});
    scheduler_.stall(milliseconds(4000));
    scheduler_.runOne();  // the silence timer, first in its turn
    line_.receive(Bytes{0x91});
    scheduler_.runDue();
    EXPECT_EQ(log_, Log{"appeared"});
}

TEST_F(FrameHearingSource, AFloodWithoutAReaderIsTakenInTurns) {
    opensSession_ = false;
    start();
    line_.receive(Bytes{0x90});
    line_.receive(Bytes(1'000'000, 0x90));
    EXPECT_GE(line_.incoming.size(), 1'000'000 - ByteChannel::kBufferLimit);
    scheduler_.runDue();
    EXPECT_TRUE(line_.incoming.empty());
    EXPECT_EQ(log_, Log{"appeared"});
}

TEST_F(FrameHearingSource, AReaderThatTakesNothingIsNotTakenForASilentTester) {
    start();
    line_.receive(Bytes{0x90});
    session_->events.bytesAvailable = [] {};
    line_.receive(Bytes(1'000'000, 0x90));
    scheduler_.advance(milliseconds(10'000));
    EXPECT_EQ(session_->bytesAvailable(), ByteChannel::kBufferLimit);
    EXPECT_EQ(log_, Log{"appeared"});
    session_->events.bytesAvailable = [this] { readSession(); };
    readSession();
    scheduler_.runDue();
    EXPECT_EQ(received_.size(), 1'000'001U);
}

TEST_F(FrameHearingSource, WhatASessionHasNotReadAtTheEndCanStillBeRead) {
    start();
    line_.receive(Bytes{0x90});
    session_->events.bytesAvailable = [] {};
    line_.receive(Bytes{0x91, 0x92});
    line_.end("broken pipe");
    EXPECT_EQ(log_.back(), "disappeared");
    readSession();
    EXPECT_EQ(received_, (Bytes{0x90, 0x91, 0x92}));
    std::uint8_t byte = 0;
    EXPECT_EQ(session_->read(&byte, 1), -1);
}

TEST_F(FrameHearingSource, ASessionHearsAtOnceThatThereIsSpace) {
    start();
    line_.receive(Bytes{0x90});
    EXPECT_EQ(spaces_, 0);
    scheduler_.runDue();
    EXPECT_EQ(spaces_, 1);
}

TEST_F(FrameHearingSource, AnEndOfTheSessionMayDestroyIt) {
    start();
    line_.receive(Bytes{0x90});
    session_->events.closed = [this, text = std::string(100, 'x')](const std::string&) {
        session_.reset();
        log_.push_back(text);
    };
    line_.end("broken pipe");
    EXPECT_EQ(log_, (Log{"appeared", std::string(100, 'x'), "disappeared"}));
}

TEST_F(FrameHearingSource, AnObserverMayStopTheSourceInsideItsEvents) {
    start();
    line_.receive(Bytes{0x90});
    session_->events.bytesAvailable = [this] { hearing_.stop(); };
    line_.receive(Bytes{0x91});
    EXPECT_EQ(hearing_.state(), SearchState::Stopped);
    EXPECT_EQ(log_.back(), "disappeared");
    scheduler_.advance(milliseconds(10'000));
    EXPECT_EQ(made_->dials, 1);
}

TEST_F(FrameHearingSource, TheReasonOfAnOlderFailureIsNotShownWhileTheChannelIsOpen) {
    made_->line = nullptr;
    start();
    EXPECT_EQ(hearing_.problem(), "nobody there");
    EXPECT_EQ(hearing_.failedStep(), FailedStep::Refused);
    made_->line = &line_;
    scheduler_.advance(milliseconds(500));
    EXPECT_EQ(hearing_.problem(), "connected, but no bytes come");
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoBytes);
    line_.receive(Bytes{0x90});
    EXPECT_EQ(hearing_.problem(), "");
    EXPECT_EQ(hearing_.failedStep(), FailedStep::None);
}

TEST_F(FrameHearingSource, APortThatIsBackStartsTheRetriesSmallAgain) {
    made_->line = nullptr;
    start();
    scheduler_.advance(milliseconds(60'000));
    made_->peerMayBeBack();
    const int dials = made_->dials;
    scheduler_.advance(milliseconds(500));
    EXPECT_EQ(made_->dials, dials + 1);
}

TEST_F(FrameHearingSource, ADialThatAnswersAfterItsCancelIsClosedAndForgotten) {
    made_->answersAtOnce = false;
    made_->answersAfterCancel = true;
    start();
    scheduler_.advance(milliseconds(5000));
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoAnswer);
    made_->answer();
    EXPECT_EQ(hearing_.state(), SearchState::Waiting);
    EXPECT_EQ(line_.channel, nullptr);
    scheduler_.advance(milliseconds(500));  // dials again
    EXPECT_EQ(hearing_.state(), SearchState::Dialing);
    made_->answer();
    EXPECT_EQ(hearing_.state(), SearchState::Listening);
}

TEST_F(FrameHearingSource, ADialerBringsItsOwnTimeLimit) {
    made_->answersAtOnce = false;
    made_->limit = milliseconds(20'000);
    start();
    scheduler_.advance(milliseconds(19'999));
    EXPECT_TRUE(made_->dialing());
    scheduler_.advance(milliseconds(1));
    EXPECT_FALSE(made_->dialing());
}

// A name or a reason comes from outside, and could drive a terminal.
TEST_F(FrameHearingSource, NamesAndProblemsArePrintable) {
    made_->name = "Tester\x1b[2J\n\xff";
    start();
    line_.receive(Bytes{0x90});
    EXPECT_EQ(accessory_->name, "Tester\xEF\xBF\xBD[2J\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(hearing_.peerName(), accessory_->name);
    line_.end("gone\r\nfor ever");
    EXPECT_EQ(hearing_.problem(),
              "gone\xEF\xBF\xBD\xEF\xBF\xBD"
              "for ever");
    EXPECT_EQ(testing::logLines().back(), "info kestrix.accessory: fake:hearing: " + hearing_.problem());
}

TEST_F(DialingSourceTest, ASessionMayOutliveItsSource) {
    auto* dialer = new FakeDialer;
    FakeLine line;
    dialer->line = &line;
    auto source = std::make_unique<DialingSource>("fake:", std::unique_ptr<Dialer>(dialer),
                                                  makeAnyByteListener, scheduler_);
    source->start(*this);
    scheduler_.runDue();
    line.receive(Bytes{1});
    source.reset();
    std::uint8_t byte = 0;
    EXPECT_EQ(session_->read(&byte, 1), -1);
    EXPECT_EQ(accessory_->opener, nullptr);
}

}  // namespace
}  // namespace kestrix::platform
