#include "protocol/HexText.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "protocol/KV3820protocal.h"
#include "tests/protocol/RecordDifference.h"
#include "tests/support/FrameBuilder.h"

// How a frame's hexadecimal text becomes bytes, seen through whole frames: the pair under test stands where
// the LOW OHM function has its first setting.

namespace kestrix::protocol {
namespace {

using kestrix::testing::FrameBuilder;

MeterReading decoded(std::string_view text) {
    KV3820protocal decoder;
    decoder.initFromString(text);
    return decoder.getAllDataStructValue();
}

unsigned byteOf(std::string_view pair) {
    const MeterReading record = decoded(FrameBuilder('3').hexText().replace(6, 2, pair));
    EXPECT_EQ(record.iFunction, '3');
    return record.iSubFunc;
}

MeterReading decodedBytes(const FrameBuilder& frame) {
    KV3820protocal decoder;
    decoder.initFromNSdata(frame.bytes());
    return decoder.getAllDataStructValue();
}

TEST(HexText, LowerCasePairIsReadExactly) {
    EXPECT_EQ(byteOf("1a"), 0x1AU);
    EXPECT_EQ(byteOf("a1"), 0xA1U);
    EXPECT_EQ(byteOf("af"), 0xAFU);
    EXPECT_EQ(byteOf("ff"), 0xFFU);
    EXPECT_EQ(byteOf("00"), 0x00U);
    EXPECT_EQ(byteOf("99"), 0x99U);
}

TEST(HexText, CapitalLowLetterBehindADigitIsReadAsLowerCase) {
    EXPECT_NE(byteOf("1A"), 0x1AU);
    EXPECT_EQ(byteOf("1A"), 0xFAU);  // 16 * 1 + ('A' - 'a' + 10) = -6
    EXPECT_EQ(byteOf("0F"), 0xEFU);
    EXPECT_EQ(byteOf("9A"), 0x7AU);
}

TEST(HexText, CapitalPairIsReadExactly) {
    EXPECT_EQ(byteOf("AB"), 0xABU);
    EXPECT_EQ(byteOf("FF"), 0xFFU);
    EXPECT_EQ(byteOf("FA"), 0xFAU);
}

TEST(HexText, CapitalHighLetterWithADigit) {
    EXPECT_EQ(byteOf("A0"), 0xA0U);
    EXPECT_EQ(byteOf("F9"), 0xF9U);
}

TEST(HexText, LowerCaseLowLetterBehindACapitalIsReadAsCapital) {
    EXPECT_EQ(byteOf("Ab"), 0xCBU);  // 16 * 10 + ('b' - 'A' + 10) = 203
    EXPECT_EQ(byteOf("Ff"), 0x1FU);
}

TEST(HexText, CapitalLowLetterBehindALowerCaseOneIsReadAsLowerCase) {
    EXPECT_EQ(byteOf("aB"), 0x8BU);  // 16 * 10 + ('B' - 'a' + 10) = 139
    EXPECT_EQ(byteOf("fF"), 0xDFU);
}

TEST(HexText, CapitalsBeyondFAreReadAsLowerCaseLetters) {
    EXPECT_EQ(byteOf("G0"), 0x00U);  // 16 * ('G' - 'a' + 10) = -256
    EXPECT_EQ(byteOf("GA"), 0xEAU);  // the high letter is not one of A to F
    EXPECT_EQ(byteOf("g0"), 0x00U);  // 16 * 16
    EXPECT_EQ(byteOf("@1"), 0x91U);  // 16 * ('@' - 'a' + 10) + 1 = -367
    EXPECT_EQ(byteOf("AG"), 0xB0U);  // 16 * 10 + ('G' - 'A' + 10)
}

TEST(HexText, CharactersThatAreNoDigitsAreReadAsLowerCaseLetters) {
    EXPECT_EQ(byteOf(" 0"), 0x90U);  // 16 * (0x20 - 0x61 + 10) = -880
    EXPECT_EQ(byteOf("0 "), 0xC9U);  // 0x20 - 0x61 + 10 = -55
    EXPECT_EQ(byteOf("/0"), 0x80U);  // just below '0'
    EXPECT_EQ(byteOf("0/"), 0xD8U);
    EXPECT_EQ(byteOf(":0"), 0x30U);  // just above '9'
    EXPECT_EQ(byteOf("0:"), 0xE3U);
    EXPECT_EQ(byteOf("0\xC3"), 0x6CU);
    EXPECT_EQ(byteOf("\xC3"
                     "0"),
              0xC0U);
}

TEST(HexText, EveryByteValueInLowerCaseDecodesExactly) {
    FrameBuilder frame('3');
    for (unsigned value = 0; value < 256; ++value) {
        frame.setting(1, static_cast<std::uint8_t>(value));
        EXPECT_EQ(decoded(frame.hexText()).iSubFunc, value);
    }
}

TEST(HexText, WholeFrameDecodesLikeItsBytes) {
    const FrameBuilder frame = FrameBuilder('5')
                                   .setting(1, 1)
                                   .reading(1, 0xABCD, 0x8F)
                                   .reading(3, 2304, 0x81)
                                   .status(0x0A)
                                   .wires(230, 3);
    EXPECT_EQ(firstDifference(decodedBytes(frame), decoded(frame.hexText())), "");
    EXPECT_EQ(decoded(frame.hexText()).iFunction, '5');
}

TEST(HexText, OddLastCharacterIsDropped) {
    const FrameBuilder frame = FrameBuilder('3').wires(0xBEEF, 0xBEEF);
    const std::string text = frame.hexText();
    EXPECT_EQ(firstDifference(decodedBytes(frame), decoded(text + "7")), "");
    EXPECT_EQ(firstDifference(decodedBytes(frame), decoded(text.substr(0, 63))), "");
    EXPECT_EQ(firstDifference(MeterReading(), decoded(text.substr(0, 61))), "");
}

TEST(HexText, ShorterThanSixtyTwoCharactersGivesTheAllZeroRecord) {
    const std::string text = FrameBuilder('3').setting(1, 5).hexText();
    for (std::size_t length = 0; length < 62; ++length) {
        EXPECT_EQ(firstDifference(MeterReading(), decoded(text.substr(0, length))), "") << length;
    }
    EXPECT_EQ(decoded(text.substr(0, 62)).iSubFunc, 5);
}

TEST(HexText, EmptyTextGivesTheAllZeroRecord) {
    EXPECT_EQ(firstDifference(MeterReading(), decoded("")), "");
    EXPECT_EQ(firstDifference(MeterReading(), decoded(std::string_view())), "");
}

TEST(HexText, CharactersBehindTheFrameAreIgnored) {
    const FrameBuilder frame = FrameBuilder('3').setting(1, 4).reading(1, 12, 0x01);
    EXPECT_EQ(firstDifference(decodedBytes(frame), decoded(frame.hexText() + std::string(1000, 'x'))), "");
    EXPECT_EQ(firstDifference(decodedBytes(frame), decoded(frame.hexText() + frame.hexText())), "");
}

TEST(HexText, ZeroCharacterIsACharacterLikeAnyOther) {
    EXPECT_EQ(byteOf(std::string_view("\0"
                                      "0",
                                      2)),
              0x90U);                                      // 16 * (0 - 'a' + 10) = -1392
    EXPECT_EQ(byteOf(std::string_view("0\0", 2)), 0xA9U);  // -87
}

TEST(HexText, BytesAreWrittenAsTwoLowerCaseDigitsBehindWhatIsThere) {
    std::string text = "7e";
    std::string expected = "7e";
    for (unsigned value = 0; value < 256; ++value) {
        const std::array<std::uint8_t, 1> byte{static_cast<std::uint8_t>(value)};
        appendHexText(text, byte);
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", value);
        expected += digits;
    }
    EXPECT_EQ(text, expected);
    appendHexText(text, {});
    EXPECT_EQ(text, expected);
}

TEST(HexText, PairsThatFindNoRoomAreDropped) {
    std::array<std::uint8_t, 4> bytes{0xEE, 0xEE, 0xEE, 0xEE};
    EXPECT_EQ(bytesFromHexText("010203", std::span(bytes).first(2)), 2U);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0x01, 0x02, 0xEE, 0xEE}));
    EXPECT_EQ(bytesFromHexText("0a0b0", bytes), 2U);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0x0A, 0x0B, 0xEE, 0xEE}));
}

}  // namespace
}  // namespace kestrix::protocol
