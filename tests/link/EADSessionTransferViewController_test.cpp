#include "link/EADSessionTransferViewController.h"

#include <fcntl.h>
#include <unistd.h>

#include <numeric>

#include "tests/link/SessionTransferFixture.h"

namespace kestrix::link {
namespace {

using platform::Accessory;

constexpr const char* kIron = "铁";
constexpr const char* kNoIron = "非铁";

// A chunk of this many bytes, numbered, with the field in its place where it reaches as far.
std::vector<std::uint8_t> chunkWith(std::uint16_t field, std::size_t count = 36) {
    std::vector<std::uint8_t> bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    if (count > 7) bytes[7] = static_cast<std::uint8_t>(field >> 8U);
    if (count > 8) bytes[8] = static_cast<std::uint8_t>(field & 255U);
    return bytes;
}

TEST_F(SessionTransfer, TheSessionIsOpenExactlyWhileItIsShown) {
    EXPECT_EQ(line_.channel, nullptr);
    appear();
    EXPECT_NE(line_.channel, nullptr);
    EXPECT_EQ(screen_.accessory(), accessory_);
    EXPECT_EQ(screen_.screenTitle.text(), QStringLiteral("kestrix.tester"));
    screen_.viewWillDisappear();
    EXPECT_EQ(line_.channel, nullptr);
    EXPECT_EQ(screen_.accessory(), nullptr);
}

TEST_F(SessionTransfer, ASessionThatIsRefusedIsOneLineOfTheLog) {
    testing::expectWarning("creating session failed");
    screen_.viewWillAppear();
    EXPECT_EQ(screen_.screenTitle.text(), QStringLiteral("kestrix.tester"));
}

TEST_F(SessionTransfer, BytesAreShownAsHexadecimalTextWithABlankBehindEach) {
    appear();
    EXPECT_EQ(count(), "Bytes Received from BTX311: 0");
    receive({0x7e, 0x0d, 0x00, 0xff});
    EXPECT_EQ(screen_.rxResult.text(), QStringLiteral("7e 0d 00 ff "));
    EXPECT_EQ(count(), "Bytes Received from BTX311: 4");
    receive({0xab});
    EXPECT_EQ(screen_.rxResult.text(), QStringLiteral("ab ")) << "the last chunk only";
    EXPECT_EQ(count(), "Bytes Received from BTX311: 5");
    EXPECT_EQ(controller().readBytesAvailable(), 0U);
}

TEST_F(SessionTransfer, AFieldWithBit15SetIsNoIron) {
    appear();
    receive(chunkWith(0x807b));
    EXPECT_EQ(type(), kNoIron);
    EXPECT_EQ(result(), "12.300000");
    EXPECT_DOUBLE_EQ(EADSessionTransferViewController::lastReading, 0x807b / 10.0);
}

TEST_F(SessionTransfer, AFieldWithBit15ClearIsIron) {
    appear();
    receive(chunkWith(0x007b));
    EXPECT_EQ(type(), kIron);
    EXPECT_EQ(result(), "12.300000");
    EXPECT_DOUBLE_EQ(EADSessionTransferViewController::lastReading, 12.3);
}

TEST_F(SessionTransfer, TheEndsOfBothRanges) {
    struct Row {
        std::uint16_t field;
        const char* type;
        const char* result;
    };
    constexpr Row kRows[] = {{0x0000, kIron, "0.000000"},
                             {0x7fff, kIron, "3276.700000"},
                             {0x8000, kNoIron, "0.000000"},
                             {0xffff, kNoIron, "3276.699951"}};  // of single precision
    appear();
    for (const Row& row : kRows) {
        receive(chunkWith(row.field));
        EXPECT_EQ(type(), row.type) << row.field;
        EXPECT_EQ(result(), row.result) << row.field;
    }
}

TEST_F(SessionTransfer, AChunkThatEndsBeforeTheFieldLeavesTheLastReading) {
    appear();
    for (const std::size_t size : {0U, 8U}) {
        receive(chunkWith(0x807b));
        receive(chunkWith(0x0001, size));
        EXPECT_EQ(type(), kNoIron) << size;
        EXPECT_EQ(result(), "12.300000") << size;
        EXPECT_DOUBLE_EQ(EADSessionTransferViewController::lastReading, 0x807b / 10.0) << size;
    }
    EXPECT_EQ(count(), "Bytes Received from BTX311: 80");
    EXPECT_EQ(screen_.rxResult.text(), QStringLiteral("00 01 02 03 04 05 06 00 "));
}

TEST_F(SessionTransfer, WhatItReadsIsInTheLogStepByStep) {
    using Lines = std::vector<std::string>;
    appear();
    EXPECT_EQ(logged(), Lines{"1"});
    receive(chunkWith(0x807b, 12));
    EXPECT_EQ(logged(), (Lines{"00010203040506807b090a0b", "807b", "000000001111011"}));
    receive(chunkWith(0xffff, 9));
    EXPECT_EQ(logged(), (Lines{"00010203040506ffff", "ffff", "111111111111111"}));
    receive(chunkWith(0x7abc, 9));
    EXPECT_EQ(logged(), (Lines{"000102030405067abc", "7abc"})) << "with bit 15 clear there are no digits";
    receive(chunkWith(0, 8));
    EXPECT_EQ(logged(), Lines{"0001020304050600"}) << "the field is not all there";
    screen_.viewWillDisappear();
    opener_.lines.push_back(&line_);
    screen_.viewWillAppear();
    EXPECT_EQ(logged(), Lines{"1"});
}

TEST_F(SessionTransfer, ANotificationWithoutBytesLeavesTheTextOfTheLastChunk) {
    appear();
    receive({0xab});
    line_.tellBytes();
    EXPECT_EQ(screen_.rxResult.text(), QStringLiteral("ab "));
    EXPECT_EQ(count(), "Bytes Received from BTX311: 1");
}

TEST_F(SessionTransfer, AChunkThatJustReachesTheFieldIsRead) {
    appear();
    for (const std::size_t size : {9U, 17U}) {
        receive(chunkWith(static_cast<std::uint16_t>(size), size));
        EXPECT_EQ(type(), kIron) << size;
        EXPECT_EQ(result(), size == 9 ? "0.900000" : "1.700000");
    }
}

TEST_F(SessionTransfer, ALargeChunkIsKeptWhole) {
    appear();
    const Bytes bytes = chunkWith(0x007b, 65'536);
    receive(bytes);
    EXPECT_EQ(screen_.rxResult.text().size(), 3 * 65'536);
    EXPECT_TRUE(screen_.rxResult.text().endsWith(QStringLiteral("fd fe ff ")));
    EXPECT_EQ(count(), "Bytes Received from BTX311: 65536");
    EXPECT_EQ(result(), "12.300000");
}

TEST_F(SessionTransfer, TheReadingOfANoIronProbeIsAlsoALineOfStandardOutput) {
    appear();
    ::testing::internal::CaptureStdout();
    receive(chunkWith(0x807b));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "转换为十进制：123\n");
    ::testing::internal::CaptureStdout();
    receive(chunkWith(0x007b));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(SessionTransfer, AStalledReaderOfStandardOutputHoldsNothingUp) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int before = dup(STDOUT_FILENO);
    fflush(stdout);
    ASSERT_EQ(dup2(ends[1], STDOUT_FILENO), STDOUT_FILENO);
    appear();
    for (int line = 0; line < 10'000; ++line) screen_.two_ten(1011);  // far more than a pipe holds
    dup2(before, STDOUT_FILENO);
    for (const int end : {before, ends[0], ends[1]}) close(end);
    receive(chunkWith(0x007b));
    EXPECT_EQ(result(), "12.300000");
}

TEST_F(SessionTransfer, ItsNumberUtilities) {
    EXPECT_EQ(screen_.decimalTOBinary(0), "");
    EXPECT_EQ(screen_.decimalTOBinary(5), "101");
    EXPECT_EQ(screen_.toDecimalSystemWithBinarySystem(u"1111"), 15);
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(screen_.two_ten(1011), 11);
    EXPECT_EQ(screen_.two_ten(12), 4);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "转换为十进制：11\n转换为十进制：4\n");
}

TEST_F(SessionTransfer, ItLeavesWhenItsAccessoryGoes) {
    appear();
    disconnect(accessory_);
    EXPECT_EQ(around_.asked, std::vector<std::string>{"dismiss animated"});
}

TEST_F(SessionTransfer, ItStaysWhenAnotherAccessoryGoes) {
    appear();
    disconnect(std::make_shared<Accessory>(Accessory{8, "Other", {"kestrix.tester"}}));
    disconnect(nullptr);
    platform::NotificationCenter::defaultCenter().post({platform::kAccessoryDidDisconnect});
    EXPECT_EQ(around_.asked, std::vector<std::string>{});
}

TEST_F(SessionTransfer, ItGoesOnListeningForTheEndOfItsAccessory) {
    appear();
    disconnect(std::make_shared<Accessory>(Accessory{8, "Other", {"kestrix.tester"}}));
    disconnect(accessory_);
    disconnect(accessory_);  // it has not gone yet, and is asked again
    EXPECT_EQ(around_.asked, (std::vector<std::string>{"dismiss animated", "dismiss animated"}));
    screen_.viewWillDisappear();
    appear();
    disconnect(accessory_);
    EXPECT_EQ(around_.asked.size(), 3U);
}

TEST_F(SessionTransfer, CoveredOrNotShownItDoesNotLeave) {
    appear();
    screen_.setCovered(true);
    disconnect(accessory_);
    screen_.setCovered(false);
    screen_.viewWillDisappear();
    disconnect(accessory_);
    EXPECT_EQ(around_.asked, std::vector<std::string>{});
}

TEST_F(SessionTransfer, BackDismissesIt) {
    appear();
    screen_.btnBack.press();
    EXPECT_EQ(around_.asked, std::vector<std::string>{"dismiss animated"});
}

TEST_F(SessionTransfer, BehindItsTimeItTakesNoBytesAndShownAgainItCountsOn) {
    appear();
    receive({1, 2, 3});
    screen_.viewWillDisappear();
    opener_.lines.push_back(&line_);
    ASSERT_TRUE(controller().openSession());  // somebody else's
    receive({7, 7});
    EXPECT_EQ(controller().readBytesAvailable(), 2U);
    controller().closeSession();
    appear();
    receive({4});
    EXPECT_EQ(count(), "Bytes Received from BTX311: 4");
    EXPECT_EQ(screen_.rxResult.text(), QStringLiteral("04 "));
}

TEST_F(SessionTransfer, TheCountBeginsWithTheScreen) {
    appear();
    receive({1, 2, 3});
    screen_.viewWillDisappear();
    EADSessionTransferViewController next(ui::ScreenId::SessionTransfer, around_.services());
    next.loadView();
    EXPECT_EQ(next._receivedBytesLabel.text(), QStringLiteral("Bytes Received from BTX311: 0"));
    EXPECT_EQ(next.rxResult.text(), QString());
}

TEST_F(SessionTransfer, ASessionControllerThatIsNoneIsNotAsked) {
    appear();
    platform::NotificationCenter::defaultCenter().post({EADSessionDataReceivedNotification});
    platform::NotificationCenter::defaultCenter().post(
        {EADSessionDataReceivedNotification, static_cast<EADSessionController*>(nullptr)});
    EXPECT_EQ(count(), "Bytes Received from BTX311: 0");
}

TEST_F(SessionTransfer, WithoutItsViewItsTextControlsKeepNothing) {
    appear();
    receive({1});
    screen_._hexToSendTextField.edit(QStringLiteral("7e"));
    screen_._stringToSendTextField.edit(QStringLiteral("text"));
    screen_.viewDidUnload();
    for (const ui::TextField* field :
         {&screen_.rxResult, &screen_._hexToSendTextField, &screen_._stringToSendTextField})
        EXPECT_EQ(field->text(), QString());
    EXPECT_EQ(screen_._receivedBytesLabel.text(), QString());
}

}  // namespace
}  // namespace kestrix::link
