#include "platform/DialingSource.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/FakeChannel.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;
using testing::FakeChannel;
using testing::FakeLine;
using Bytes = std::vector<std::uint8_t>;
using Log = std::vector<std::string>;

class FakeDialer final : public Dialer {
  public:
    void dial(Done done) override {
        ++dials;
        done_ = std::move(done);
        if (answersAtOnce) answer();
    }
    void cancel() override {
        ++cancels;
        done_ = nullptr;
    }
    void answer() {
        if (line != nullptr) {
            std::exchange(done_, nullptr)({std::make_unique<FakeChannel>(*line), {}});
        } else {
            std::exchange(done_, nullptr)({nullptr, problem});
        }
    }
    bool dialing() const { return static_cast<bool>(done_); }

    FakeLine* line = nullptr;  // none: the dial fails
    std::string problem = "nobody there";
    bool answersAtOnce = true;
    int dials = 0;
    int cancels = 0;

  private:
    Done done_;
};

class DialingSourceTest : public ::testing::Test, public AccessorySourceObserver {
  protected:
    void appeared(const AccessoryPtr& accessory) override {
        log_.push_back("appeared");
        accessory_ = accessory;
        if (opensSession_)
            session_ = accessory->opener->openChannel(*accessory, accessory->protocolStrings.front());
        if (session_)
            session_->events = {[this] { readSession(); }, [this] { log_.push_back("space"); },
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
    DialingSource source_{"fake:tester", "Tester", std::unique_ptr<Dialer>(dialer_), scheduler_};
    Log log_;
    AccessoryPtr accessory_;
    bool opensSession_ = true;
    std::unique_ptr<ByteChannel> session_;
    Bytes received_;
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
    EXPECT_EQ(accessory_->name, "Tester");
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
    line_.channel->events.closed("broken pipe");
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
    line_.channel->events.closed("end");
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
    line_.channel->events.closed("end");
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
    line_.makeRoom(5);
    EXPECT_EQ(log_.back(), "space");
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
    line_.channel->events.closed("end");
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

TEST_F(DialingSourceTest, ASessionMayOutliveItsSource) {
    auto* dialer = new FakeDialer;
    FakeLine line;
    dialer->line = &line;
    auto source =
        std::make_unique<DialingSource>("fake:", "Tester", std::unique_ptr<Dialer>(dialer), scheduler_);
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
