#include "platform/DialingSource.h"

#include <gtest/gtest.h>

#include "tests/platform/DialingSourceFixture.h"
#include "tests/support/LogExpectations.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;

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

TEST_F(DialingSourceTest, TheDialerIsToldOnceForEachChannelOnWhichATesterIsHeard) {
    dialer_->line = &line_;
    start();
    EXPECT_EQ(dialer_->heards, 0);
    line_.receive(Bytes{1});
    line_.receive(Bytes{2});
    EXPECT_EQ(dialer_->heards, 1);
    line_.end("gone");
    scheduler_.advance(milliseconds(500));
    line_.receive(Bytes{3});
    EXPECT_EQ(dialer_->heards, 2);
}

TEST_F(DialingSourceTest, EachStepOfTheSearchIsTold) {
    start();
    dialer_->line = &line_;
    scheduler_.advance(milliseconds(500));
    scheduler_.advance(DialingSource::kOpeningTime);
    line_.receive(Bytes{1});
    line_.end("gone");
    scheduler_.advance(milliseconds(500));
    line_.receive(Bytes{1});
    scheduler_.advance(DialingSource::kOpeningTime);
    source_.stop();
    using Step = std::pair<SearchState, std::string>;
    EXPECT_EQ(searches_, (std::vector<Step>{{SearchState::Waiting, ""},
                                            {SearchState::Dialing, ""},
                                            {SearchState::Waiting, "nobody there"},
                                            {SearchState::Dialing, "nobody there"},
                                            {SearchState::Listening, ""},
                                            {SearchState::Listening, "connected, but no bytes come"},
                                            {SearchState::Present, ""},
                                            {SearchState::Waiting, "gone"},
                                            {SearchState::Dialing, "gone"},
                                            {SearchState::Listening, ""},
                                            {SearchState::Present, ""},
                                            {SearchState::Stopped, ""}}));
}

TEST_F(DialingSourceTest, AFailedDialMayTellThePeersName) {
    dialer_->name = "KX 1";
    start();
    EXPECT_EQ(source_.peerName(), "KX 1");
}

TEST_F(DialingSourceTest, TheTesterAppearsWithItsFirstByteWhichTheSessionReceives) {
    dialer_->line = &line_;
    start();
    EXPECT_EQ(log_, Log{});
    line_.receive(Bytes{1, 2, 3});
    EXPECT_EQ(log_, Log{"appeared"});
    EXPECT_EQ(received_, (Bytes{1, 2, 3}));
    EXPECT_NE(accessory_->connectionId, 0U);
    EXPECT_EQ(accessory_->name, "tester");
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

// The pause between two dials counts from the first one's start, but is never shorter than the first pause.
TEST_F(DialingSourceTest, ADialThatTookLongIsFollowedByTheNextOneSoon) {
    dialer_->answersAtOnce = false;
    start();
    for (int dials = 1; dials < 8; ++dials) {
        ASSERT_EQ(dialer_->dials, dials);
        scheduler_.advance(milliseconds(4000));
        dialer_->answer();
        scheduler_.advance(milliseconds(499));
        EXPECT_EQ(dialer_->dials, dials);
        scheduler_.advance(milliseconds(dials < 5 ? 1 : 501));
    }
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
    // More than two buffers hold: kept bytes would stop the reading of what comes.
    for (std::size_t bytes = 0; bytes <= 3 * ByteChannel::kBufferLimit; bytes += 10'000) {
        line_.receive(Bytes(10'000, 7));
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

}  // namespace
}  // namespace kestrix::platform
