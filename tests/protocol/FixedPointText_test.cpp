#include "protocol/FixedPointText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string>
#include <string_view>

// The texts of the readings are not written by printf; here every one that a frame can hold is held against
// it.

namespace kestrix::protocol {
namespace {

constexpr unsigned kMagnitudes = 65536;
constexpr unsigned kDecimalCounts = 16;
constexpr std::size_t kGuards = 8;
constexpr char kGuard = '\x7F';

double divided(unsigned magnitude, unsigned decimals, bool negative) {
    double value = magnitude;
    for (unsigned i = 0; i < decimals; ++i) {
        value /= 10;
    }
    return negative && magnitude != 0 ? -value : value;
}

std::string_view printed(char (&buffer)[64], double value, unsigned decimals) {
    const int length = std::snprintf(buffer, sizeof buffer, "%.*f", static_cast<int>(decimals), value);
    std::replace(buffer, buffer + length, ',', '.');  // printf writes the locale's point
    return {buffer, static_cast<std::size_t>(length)};
}

// Room for one text, with guard characters behind it that must survive.
class Room {
  public:
    Room() { std::fill(std::begin(characters_), std::end(characters_), kGuard); }

    char* out() { return characters_; }

    bool holds(std::string_view expected, std::size_t length) const {
        return length <= kFixedPointTextMax && std::string_view(characters_, length) == expected &&
               std::string_view(characters_ + kFixedPointTextMax, kGuards) == std::string(kGuards, kGuard);
    }

    std::string text(std::size_t length) const { return {characters_, std::min(length, sizeof characters_)}; }

  private:
    char characters_[kFixedPointTextMax + kGuards];
};

template <class Check>
void forEveryReading(Check check) {
    for (const bool negative : {false, true}) {
        for (unsigned decimals = 0; decimals < kDecimalCounts; ++decimals) {
            for (unsigned magnitude = 0; magnitude < kMagnitudes; ++magnitude) {
                check(static_cast<std::uint16_t>(magnitude), decimals, negative);
                if (::testing::Test::HasFailure()) {
                    return;
                }
            }
        }
    }
}

TEST(FixedPointValue, IsTheMagnitudeDividedByTenStepByStepForEveryReading) {
    forEveryReading([](std::uint16_t magnitude, unsigned decimals, bool negative) {
        const double expected = divided(magnitude, decimals, negative);
        const double actual = fixedPointValue(magnitude, decimals, negative);
        if (std::bit_cast<std::uint64_t>(expected) != std::bit_cast<std::uint64_t>(actual)) {
            ADD_FAILURE() << magnitude << " with " << decimals << " decimals, negative " << negative << ": "
                          << expected << " became " << actual;
        }
    });
}

TEST(FixedPointText, EqualsPrintfForEveryReading) {
    forEveryReading([](std::uint16_t magnitude, unsigned decimals, bool negative) {
        char buffer[64];
        const std::string_view expected = printed(buffer, divided(magnitude, decimals, negative), decimals);
        Room room;
        const std::size_t length = writeFixedPoint(room.out(), magnitude, decimals, negative);
        if (!room.holds(expected, length)) {
            ADD_FAILURE() << expected << " became " << room.text(length);
        }
    });
}

class RoundedText : public ::testing::TestWithParam<unsigned> {};

TEST_P(RoundedText, EqualsPrintfForEveryReading) {
    forEveryReading([](std::uint16_t magnitude, unsigned decimals, bool negative) {
        const double volts = divided(magnitude, decimals, negative);
        char buffer[64];
        const std::string_view expected = printed(buffer, volts, GetParam());
        Room room;
        const std::size_t length = writeRounded(room.out(), volts, GetParam());
        if (!room.holds(expected, length)) {
            ADD_FAILURE() << magnitude << " with " << decimals << " decimals: " << expected << " became "
                          << room.text(length);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Decimals, RoundedText, ::testing::Values(0U, 1U),
                         [](const auto& decimals) { return std::to_string(decimals.param); });

std::string fixedPointText(std::uint16_t magnitude, unsigned decimals, bool negative) {
    char out[kFixedPointTextMax];
    return {out, writeFixedPoint(out, magnitude, decimals, negative)};
}

std::string roundedText(double volts, unsigned decimals) {
    char out[kFixedPointTextMax];
    return {out, writeRounded(out, volts, decimals)};
}

TEST(FixedPointText, HasExactlyTheDecimalsAsked) {
    EXPECT_EQ(fixedPointText(1234, 2, false), "12.34");
    EXPECT_EQ(fixedPointText(12345, 2, true), "-123.45");
    EXPECT_EQ(fixedPointText(7, 0, false), "7");
    EXPECT_EQ(fixedPointText(5, 3, false), "0.005");
    EXPECT_EQ(fixedPointText(65535, 15, true), "-0.000000000065535");
}

TEST(FixedPointText, OfZeroHasNoSign) {
    EXPECT_EQ(fixedPointText(0, 2, true), "0.00");
    EXPECT_EQ(fixedPointText(0, 0, true), "0");
    EXPECT_EQ(fixedPointText(0, 15, false), "0.000000000000000");
}

TEST(RoundedText, RoundsAHalfAsPrintfDoes) {
    EXPECT_EQ(roundedText(0.5, 0), "0");
    EXPECT_EQ(roundedText(1.5, 0), "2");
    EXPECT_EQ(roundedText(2.5, 0), "2");
    EXPECT_EQ(roundedText(0.25, 1), "0.2");
    EXPECT_EQ(roundedText(0.75, 1), "0.8");
    EXPECT_EQ(roundedText(9.96, 1), "10.0");
    EXPECT_EQ(roundedText(65535.0, 0), "65535");
}

TEST(RoundedText, HasRoomForTheValuesThatStandForNoNumber) {
    EXPECT_EQ(roundedText(5000001.0, 0), "5000001");
    EXPECT_EQ(roundedText(5000002.0, 1), "5000002.0");
}

TEST(RoundedText, KeepsTheSignOfAValueThatRoundsToZero) {
    EXPECT_EQ(roundedText(-0.3, 0), "-0");
    EXPECT_EQ(roundedText(-0.04, 1), "-0.0");
    EXPECT_EQ(roundedText(0.0, 1), "0.0");
}

}  // namespace
}  // namespace kestrix::protocol
