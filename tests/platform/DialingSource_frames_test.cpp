// A source whose listener knows what a frame is.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/platform/DialingSourceFixture.h"
#include "tests/support/LogExpectations.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;
using testing::FakeDialer;
using testing::FakeLine;
using Bytes = std::vector<std::uint8_t>;

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
    line_.receive(Bytes(100, 7));
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoFrames);
    scheduler_.advance(DialingSource::kSilenceLimit);
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoFrames);
    scheduler_.advance(milliseconds(500) + DialingSource::kSilenceLimit);
    EXPECT_EQ(hearing_.failedStep(), FailedStep::NoBytes);
}

TEST_F(FrameHearingSource, WhatComesBehindAFrameIsNoSilenceAlsoInOnePiece) {
    start();
    line_.receive(Bytes{0x90, 5});
    EXPECT_EQ(log_, Log{"appeared"});
    scheduler_.advance(DialingSource::kSilenceLimit);
    EXPECT_EQ(log_, (Log{"appeared", "closed: no valid frame for 3 s", "disappeared"}));
    scheduler_.advance(milliseconds(500));
    line_.receive(Bytes{5, 0x90});
    scheduler_.advance(DialingSource::kSilenceLimit);
    EXPECT_EQ(hearing_.problem(), "silent for 3 s");
}

// Noise in which not even the beginning of a frame is.
class DeafListener final : public Listener {
  public:
    std::size_t hear(std::span<const std::uint8_t>) override { return 0; }
    std::size_t undecided() const override { return 0; }
};

TEST_F(DialingSourceTest, NoiseThatCouldBeginNoFrameIsNoSilence) {
    auto* dialer = new FakeDialer;
    FakeLine line;
    dialer->line = &line;
    DialingSource source(
        "fake:", std::unique_ptr<Dialer>(dialer), [] { return std::make_unique<DeafListener>(); },
        scheduler_);
    source.start(*this);
    scheduler_.runDue();
    line.receive(Bytes{1, 2, 3});
    EXPECT_EQ(source.failedStep(), FailedStep::None);
    scheduler_.advance(DialingSource::kOpeningTime);
    EXPECT_EQ(source.failedStep(), FailedStep::NoFrames);
    scheduler_.advance(DialingSource::kSilenceLimit - DialingSource::kOpeningTime);
    EXPECT_EQ(source.problem(), "bytes come, but no valid frame");
    source.stop();
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
    ASSERT_EQ(hearing_.state(), SearchState::Listening);
    scheduler_.advance(DialingSource::kOpeningTime - milliseconds(1));
    EXPECT_EQ(hearing_.problem(), "") << "what opens may take its time to bring something";
    EXPECT_EQ(hearing_.failedStep(), FailedStep::None);
    scheduler_.advance(milliseconds(1));
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
