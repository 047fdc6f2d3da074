#include "link/NumberText.h"

#include <gtest/gtest.h>

#include <QString>

namespace kestrix::link {
namespace {

TEST(NumberText, BinaryDigitsOfZeroAreTheEmptyText) {
    EXPECT_EQ(binaryDigits(0), "");
}

TEST(NumberText, BinaryDigitsHaveNoLeadingZeros) {
    EXPECT_EQ(binaryDigits(1), "1");
    EXPECT_EQ(binaryDigits(5), "101");
    EXPECT_EQ(binaryDigits(65535), "1111111111111111");
    EXPECT_EQ(binaryDigits(32768), "1000000000000000");
}

TEST(NumberText, ValueOfADecimalWrittenBinaryNumber) {
    EXPECT_EQ(valueOfDecimalWrittenBinary(0), 0);
    EXPECT_EQ(valueOfDecimalWrittenBinary(1011), 11);
    EXPECT_EQ(valueOfDecimalWrittenBinary(1'111'111'111), 1023);
    EXPECT_EQ(valueOfDecimalWrittenBinary(-101), -5);
}

TEST(NumberText, DigitsFromTwoToNineWeighWithTheirOwnValue) {
    EXPECT_EQ(valueOfDecimalWrittenBinary(12), 4);
    EXPECT_EQ(valueOfDecimalWrittenBinary(9), 9);
    EXPECT_EQ(valueOfDecimalWrittenBinary(90), 18);
}

// The quotient is kept in 32 bits: what stands above them is lost after the first digit.
TEST(NumberText, ANumberPastThirtyTwoBitsIsCutToThem) {
    EXPECT_EQ(valueOfDecimalWrittenBinary(42'949'672'961), 1);  // quotient 4294967296, which is 0 in 32 bits
    EXPECT_EQ(valueOfDecimalWrittenBinary(42'949'673'061),
              1 + 2 * 0 + 4 * 1);  // quotient 4294967306, 10 in 32 bits
}

TEST(NumberText, ValueOfABinaryText) {
    EXPECT_EQ(valueOfBinaryText(u""), 0);
    EXPECT_EQ(valueOfBinaryText(u"101"), 5);
    EXPECT_EQ(valueOfBinaryText(u"1111"), 15);
    EXPECT_EQ(valueOfBinaryText(u"0001"), 1);
    EXPECT_EQ(valueOfBinaryText(u"12"), 4);
}

TEST(NumberText, ACharacterThatIsNoDigitCountsZeroButKeepsItsPlace) {
    EXPECT_EQ(valueOfBinaryText(u"1x1"), 5);
    EXPECT_EQ(valueOfBinaryText(u"1Ω0"), 4);
    EXPECT_EQ(valueOfBinaryText(u"-1"), 1);
}

TEST(NumberText, ALongBinaryTextStaysThirtyTwoBitsWide) {
    EXPECT_EQ(valueOfBinaryText(QString(31, u'1')), 2'147'483'647);
    EXPECT_EQ(valueOfBinaryText(QStringLiteral("1") + QString(300, u'0')),
              2'147'483'647);  // the place's weight saturates
    EXPECT_EQ(valueOfBinaryText(QString(300, u'0') + QStringLiteral("11")), 3);
}

}  // namespace
}  // namespace kestrix::link
