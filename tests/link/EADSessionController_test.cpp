#include "link/EADSessionController.h"

#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <numeric>
#include <vector>

#include "platform/NotificationCenter.h"
#include "tests/support/FakeChannel.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/ProcessState.h"

namespace kestrix::link {
namespace {

using platform::Accessory;
using platform::AccessoryPtr;
using testing::FakeLine;
using Bytes = std::vector<std::uint8_t>;

Bytes countingBytes(std::size_t count) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

class EADSessionControllerTest : public ::testing::Test {
  protected:
    void open() {
        opener_.lines.push_back(&line_);
        controller_.setupControllerForAccessory(accessory_, "tester");
        ASSERT_TRUE(controller_.openSession());
    }

    FakeLine line_;
    testing::FakeOpener opener_;
    AccessoryPtr accessory_ =
        std::make_shared<Accessory>(Accessory{7, "Tester", {"tester"}, nullptr, &opener_});
    EADSessionController controller_;
    std::vector<EADSessionController*> posted_;
    platform::NotificationCenter::Subscription subscription_ =
        platform::NotificationCenter::defaultCenter().addObserver(
            EADSessionDataReceivedNotification, [this](const platform::Notification& event) {
                posted_.push_back(std::any_cast<EADSessionController*>(event.object));
            });
};

TEST(EADSessionController, TheSharedControllerIsAlwaysTheSame) {
    EXPECT_EQ(&EADSessionController::sharedController(), &EADSessionController::sharedController());
}

TEST_F(EADSessionControllerTest, SetupRemembersBothAndOpensNothing) {
    opener_.lines.push_back(&line_);
    controller_.setupControllerForAccessory(accessory_, "tester");
    EXPECT_EQ(controller_.accessory(), accessory_);
    EXPECT_EQ(controller_.protocolString(), "tester");
    EXPECT_EQ(line_.channel, nullptr);
}

TEST_F(EADSessionControllerTest, OpeningMakesTheControllerTheAccessorysDelegate) {
    open();
    EXPECT_EQ(accessory_->delegate, &controller_);
}

TEST_F(EADSessionControllerTest, ARefusedSessionIsLoggedAndAnswersFalse) {
    testing::expectWarning("creating session failed");
    controller_.setupControllerForAccessory(accessory_, "tester");
    EXPECT_FALSE(controller_.openSession());
}

TEST_F(EADSessionControllerTest, ASessionWithoutAnAccessoryIsRefused) {
    testing::expectWarning("creating session failed");
    EXPECT_FALSE(controller_.openSession());
}

TEST_F(EADSessionControllerTest, ThreeHundredBytesAreReadIn128PiecesWithOneNotification) {
    open();
    line_.receive(countingBytes(300));
    EXPECT_EQ(line_.reads, (std::vector<std::size_t>{128, 128, 44}));
    EXPECT_EQ(posted_, std::vector<EADSessionController*>{&controller_});
    EXPECT_EQ(controller_.readBytesAvailable(), 300U);
}

TEST_F(EADSessionControllerTest, ReadDataGivesExactlyTheCountOrNothing) {
    open();
    line_.receive(countingBytes(300));
    EXPECT_EQ(controller_.readData(301), std::nullopt);
    EXPECT_EQ(controller_.readBytesAvailable(), 300U);
    EXPECT_EQ(controller_.readData(300), countingBytes(300));
    EXPECT_EQ(controller_.readBytesAvailable(), 0U);
}

TEST_F(EADSessionControllerTest, ReadDataTakesFromTheFrontInOrder) {
    open();
    line_.receive(countingBytes(10));
    EXPECT_EQ(controller_.readData(3), (Bytes{0, 1, 2}));
    line_.receive(Bytes{100, 101});
    EXPECT_EQ(controller_.readBytesAvailable(), 9U);
    EXPECT_EQ(controller_.readData(9), (Bytes{3, 4, 5, 6, 7, 8, 9, 100, 101}));
}

TEST_F(EADSessionControllerTest, AnEventThatReadsNothingIsNotifiedToo) {
    open();
    line_.receive({});
    EXPECT_EQ(posted_.size(), 1U);
    EXPECT_EQ(controller_.readBytesAvailable(), 0U);
}

TEST_F(EADSessionControllerTest, AFailingReadAddsNothingAndEnds) {
    open();
    line_.readFails = true;
    line_.receive({});
    EXPECT_EQ(controller_.readBytesAvailable(), 0U);
    EXPECT_EQ(posted_.size(), 1U);
}

TEST_F(EADSessionControllerTest, BytesWrittenWithoutSpaceGoOutWithTheNextSpaceEvent) {
    open();
    line_.room = 0;
    controller_.writeData(countingBytes(25));
    EXPECT_EQ(line_.written, Bytes{});
    line_.makeRoom(1000);
    EXPECT_EQ(line_.written, countingBytes(25));
}

TEST_F(EADSessionControllerTest, APartialWriteOfTenOfTwentyFiveLeavesTheLastFifteenInOrder) {
    open();
    line_.room = 10;
    controller_.writeData(countingBytes(25));
    EXPECT_EQ(line_.written, countingBytes(10));
    line_.makeRoom(15);
    EXPECT_EQ(line_.written, countingBytes(25));
}

TEST_F(EADSessionControllerTest, SeveralPartialWritesSendEverythingOnce) {
    open();
    line_.most = 4;
    controller_.writeData(countingBytes(25));
    EXPECT_EQ(line_.written, countingBytes(25));
    controller_.writeData(Bytes{9});
    EXPECT_EQ(line_.written.size(), 26U);
}

TEST_F(EADSessionControllerTest, SpaceWithoutProgressWaitsForTheNextSpaceEvent) {
    open();
    line_.most = 0;  // there is room, but nothing is taken
    controller_.writeData(countingBytes(5));
    EXPECT_EQ(line_.written, Bytes{});
    line_.most = 100;
    line_.makeRoom(0);
    EXPECT_EQ(line_.written, countingBytes(5));
}

TEST_F(EADSessionControllerTest, BytesQueuedBeforeTheSessionGoOutWithItsFirstSpaceEvent) {
    controller_.writeData(countingBytes(5));
    open();
    line_.makeRoom(0);
    EXPECT_EQ(line_.written, countingBytes(5));
}

TEST_F(EADSessionControllerTest, AReaderThatAlwaysLeavesAByteDoesNotLetTheBufferGrow) {
    open();
    line_.receive(Bytes(1000, 7));
    const std::size_t before = testing::allocatedBytes();
    for (int i = 0; i < 10'000; ++i) {
        line_.receive(Bytes(1000, 7));
        line_.reads.clear();
        posted_.clear();
        controller_.readData(controller_.readBytesAvailable() - 1);
    }
    EXPECT_EQ(controller_.readBytesAvailable(), 1U);
    EXPECT_LE(testing::allocatedBytes(), before + 65'536);
}

TEST_F(EADSessionControllerTest, AFailedWriteIsLoggedAndTheBytesStayQueued) {
    open();
    line_.writeFails = true;
    testing::expectWarning("write error");
    controller_.writeData(countingBytes(5));
    line_.writeFails = false;
    line_.makeRoom(0);
    EXPECT_EQ(line_.written, countingBytes(5));
}

TEST_F(EADSessionControllerTest, CloseSessionDropsBytesThatNobodyTook) {
    open();
    line_.receive(countingBytes(5));
    controller_.closeSession();
    EXPECT_EQ(controller_.readBytesAvailable(), 0U);
    EXPECT_GE(line_.closeCalls, 1);
    EXPECT_EQ(line_.channel, nullptr);
}

TEST_F(EADSessionControllerTest, CloseSessionDropsBytesThatWereNotSent) {
    open();
    line_.room = 0;
    controller_.writeData(countingBytes(5));
    controller_.closeSession();
    line_.room = 100;
    open();
    line_.makeRoom(0);
    EXPECT_EQ(line_.written, Bytes{});
}

TEST_F(EADSessionControllerTest, CloseSessionKeepsAccessoryAndProtocolForTheNextOpen) {
    open();
    controller_.closeSession();
    opener_.lines.push_back(&line_);
    EXPECT_TRUE(controller_.openSession());
    line_.receive(countingBytes(2));
    EXPECT_EQ(controller_.readBytesAvailable(), 2U);
}

TEST_F(EADSessionControllerTest, CloseSessionWithoutASessionIsHarmless) {
    controller_.closeSession();
    EXPECT_EQ(controller_.readBytesAvailable(), 0U);
}

TEST_F(EADSessionControllerTest, OpeningTwiceReplacesTheSessionWithoutClosingItsStreams) {
    FakeLine second;
    open();
    opener_.lines.push_back(&second);
    ASSERT_TRUE(controller_.openSession());
    EXPECT_EQ(line_.closeCalls, 0);
    EXPECT_EQ(line_.channel, nullptr);
    second.receive(countingBytes(3));
    EXPECT_EQ(controller_.readBytesAvailable(), 3U);
    controller_.closeSession();
}

TEST_F(EADSessionControllerTest, OtherStreamEventsChangeNothing) {
    open();
    line_.incoming = {1, 2, 3};
    line_.channel->events.closed("gone");
    EXPECT_EQ(controller_.readBytesAvailable(), 0U);
    EXPECT_TRUE(posted_.empty());
}

TEST_F(EADSessionControllerTest, AnObserverMayCloseTheSessionInsideTheEvent) {
    open();
    const auto closer = platform::NotificationCenter::defaultCenter().addObserver(
        EADSessionDataReceivedNotification,
        [this](const platform::Notification&) { controller_.closeSession(); });
    const auto notify = line_.channel->events.bytesAvailable;
    line_.incoming = {1, 2, 3};
    notify();
    EXPECT_EQ(controller_.readBytesAvailable(), 0U);
    EXPECT_EQ(line_.channel, nullptr);
}

}  // namespace
}  // namespace kestrix::link
