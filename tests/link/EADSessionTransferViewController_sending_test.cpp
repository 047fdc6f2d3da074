// What the console sends.
#include "tests/link/SessionTransferFixture.h"

namespace kestrix::link {
namespace {

std::vector<std::uint8_t> pattern() {
    std::vector<std::uint8_t> bytes(10'000);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i % 256);
    return bytes;
}

TEST_F(SessionTransfer, AnOddLastDigitIsDropped) {
    appear();
    EXPECT_EQ(sent(QStringLiteral("7e0d1")), (Bytes{0x7e, 0x0d}));
}

TEST_F(SessionTransfer, SendingStopsAtTheFirstPairThatIsNone) {
    appear();
    EXPECT_EQ(sent(QStringLiteral("0A1B")), (Bytes{0x0a, 0x1b}));
    EXPECT_EQ(sent(QStringLiteral("0A 1B")), Bytes{0x0a});
    EXPECT_EQ(sent(QStringLiteral(" 0A")), Bytes{});
    EXPECT_EQ(sent(QStringLiteral("0a1g2b")), Bytes{0x0a});
    EXPECT_EQ(sent(QStringLiteral("0ag12b")), Bytes{0x0a});
    EXPECT_EQ(sent(QStringLiteral("0x7e")), Bytes{});
    EXPECT_EQ(sent(QStringLiteral("+1-2")), Bytes{});
}

TEST_F(SessionTransfer, DigitsAndLettersOfOtherScriptsEndWhatIsSent) {
    appear();
    EXPECT_EQ(sent(QStringLiteral("7e１２")), Bytes{0x7e});
    EXPECT_EQ(sent(QStringLiteral("7e٣٤5f")), Bytes{0x7e});
    EXPECT_EQ(sent(QStringLiteral("7é0d")), Bytes{});
    EXPECT_EQ(sent(QStringLiteral("7e👷🏽0d")), Bytes{0x7e});
}

TEST_F(SessionTransfer, NothingTypedSendsNothing) {
    appear();
    EXPECT_EQ(sent(QString()), Bytes{});
    EXPECT_EQ(sent(QStringLiteral("7")), Bytes{});
}

TEST_F(SessionTransfer, NothingTypedLetsGoOutWhatWaits) {
    line_.room = 4;
    appear();
    EXPECT_EQ(sent(QStringLiteral("010203040506")), (Bytes{1, 2, 3, 4}));
    line_.room = 10;  // and nothing has told of it yet
    EXPECT_EQ(sent(QStringLiteral("x")), (Bytes{5, 6}));
}

TEST_F(SessionTransfer, SendingEndsEditing) {
    appear();
    int ended = 0;
    QObject::connect(&screen_._hexToSendTextField, &ui::TextField::editingEnded, [&ended] { ++ended; });
    screen_.sendHex();
    EXPECT_EQ(ended, 0) << "it was not edited";
    screen_._hexToSendTextField.setEditing(true);
    screen_.sendHex();
    EXPECT_EQ(ended, 1);
}

TEST_F(SessionTransfer, ReturnClosesTheKeyboard) {
    for (ui::TextField* field : {&screen_._hexToSendTextField, &screen_._stringToSendTextField}) {
        int ended = 0;
        QObject::connect(field, &ui::TextField::editingEnded, [&ended] { ++ended; });
        field->setEditing(true);
        EXPECT_TRUE(screen_.textFieldShouldReturn(*field));
        EXPECT_EQ(ended, 1);
        field->pressReturn();
        EXPECT_GT(ended, 1);
    }
}

TEST_F(SessionTransfer, TheTestPatternIsTenThousandBytesOfWhichByteIIsIModulo256) {
    appear();
    screen_.btnSend10K.press();
    EXPECT_EQ(line_.written, pattern());
}

TEST_F(SessionTransfer, WhatTheStreamDoesNotTakeOfThePatternGoesOutWithLaterSpaceEvents) {
    line_.room = 10;
    appear();
    screen_.btnSend10K.press();
    EXPECT_EQ(line_.written.size(), 10U);
    while (line_.written.size() < 10'000) {
        const std::size_t before = line_.written.size();
        line_.makeRoom(10);
        ASSERT_EQ(line_.written.size(), before + 10);
    }
    EXPECT_EQ(line_.written, pattern());
}

TEST_F(SessionTransfer, SendStringSendsNothing) {
    appear();
    screen_._stringToSendTextField.edit(QStringLiteral("7e0d"));
    screen_.btnSendString.press();
    EXPECT_EQ(line_.written, Bytes{});
}

TEST_F(SessionTransfer, AFailedWriteIsOneLineOfTheLog) {
    appear();
    line_.writeFails = true;
    testing::expectWarning("write error");
    screen_._hexToSendTextField.edit(QStringLiteral("7e"));
    screen_.sendHex();
}

}  // namespace
}  // namespace kestrix::link
