#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "protocol/KV3820protocal.h"
#include "tests/protocol/ExpectedRecord.h"
#include "tests/protocol/RecordDifference.h"
#include "tests/support/FrameBuilder.h"

// Holds the decoder against the second reading of the frame format, field by field, over more frames than
// anybody would write down.

namespace kestrix::protocol {
namespace {

using kestrix::testing::FrameBuilder;

// Empty when the decoder and the expectation agree on the frame.
std::string disagreement(const FrameBuilder::Bytes& frame) {
    KV3820protocal decoder;
    decoder.initFromNSdata(frame);
    const std::string difference = firstDifference(expectedRecord(frame), decoder.return3820data());
    return difference.empty() ? difference : difference + "\nin frame " + FrameBuilder::hexText(frame);
}

struct Starts {
    const char* name;
    FrameBuilder quiet;  // no data or overload flag set, wire voltages present
    FrameBuilder busy;   // mixed flags, negative or limited readings, no wire voltages
};

void PrintTo(const Starts& starts, std::ostream* out) {
    *out << starts.name;
}

FrameBuilder quiet(char function) {
    return FrameBuilder(function)
        .testRunning(function == '1' ? '1' : 1)
        .reading(1, 12345, 0x12)
        .reading(2, 678, 0x11)
        .reading(3, 2304, 0x01)
        .reading(4, 501, 0x81)
        .status(0xA9)
        .alarm(0x05)
        .wires(3, 231)
        .unusedBytes(0xC3);
}

FrameBuilder busy(char function) {
    return FrameBuilder(function)
        .testRunning(0x30)
        .reading(1, 40961, 0x93)
        .reading(2, 65535, 0xB5)
        .reading(3, 257, 0x84)
        .reading(4, 1027, 0x02)
        .status(0x52)
        .noDataOverload(0x5A)
        .alarm(0xFA)
        .wires(770, 65281)
        .unusedBytes(0xFF);
}

FrameBuilder withSettings(FrameBuilder frame, std::uint8_t s1, std::uint8_t s2, std::uint8_t s3,
                          std::uint8_t s4) {
    return frame.setting(1, s1).setting(2, s2).setting(3, s3).setting(4, s4);
}

std::vector<Starts> startFrames() {
    return {
        {"Earth", withSettings(quiet('1'), 1, 1, 1, '1'), withSettings(busy('1'), 0, 2, 3, 1)},
        {"Insulation", withSettings(quiet('2'), 3, 1, 0, 10), withSettings(busy('2'), 1, 0, 1, 4)},
        {"LowOhm", withSettings(quiet('3'), 7, 1, 1, 1), withSettings(busy('3'), 2, 0, 0, '1')},
        {"VoltagePhase", withSettings(quiet('4'), 3, 1, 0, 1), withSettings(busy('4'), 1, '1', 1, 0)},
        {"LoopPfc", withSettings(quiet('5'), 1, 0, 1, 1), withSettings(busy('5'), 0, 1, 0, 0)},
        {"Rcd", withSettings(quiet('6'), 2, 5, 3, 1), withSettings(busy('6'), 5, 4, 1, 0)},
        {"RcdAuto", withSettings(quiet('6'), 0, 6, 2, 0).reading(1, 283, 0x12),
         withSettings(busy('6'), 0, 1, 0, 1).reading(1, 199, 0xA7)},
    };
}

class EveryByteEveryValue : public ::testing::TestWithParam<Starts> {
  protected:
    static std::size_t sweep(const FrameBuilder& start) {
        std::size_t frames = 0;
        for (std::size_t position = 0; position < FrameBuilder::kSize; ++position) {
            FrameBuilder::Bytes frame = start.bytes();
            for (unsigned value = 0; value < 256; ++value) {
                frame.at(position) = static_cast<std::uint8_t>(value);
                ++frames;
                const std::string found = disagreement(frame);
                if (!found.empty()) {
                    ADD_FAILURE() << "byte " << position << ", value " << value << "\n" << found;
                    return frames;
                }
            }
        }
        return frames;
    }
};

TEST_P(EveryByteEveryValue, OfAQuietFrameDecodesAsExpected) {
    EXPECT_EQ(sweep(GetParam().quiet), 36U * 256U);
}

TEST_P(EveryByteEveryValue, OfABusyFrameDecodesAsExpected) {
    EXPECT_EQ(sweep(GetParam().busy), 36U * 256U);
}

INSTANTIATE_TEST_SUITE_P(KV3820protocal, EveryByteEveryValue, ::testing::ValuesIn(startFrames()),
                         [](const auto& starts) { return std::string(starts.param.name); });

// Any bytes behind a valid start and marker. Three settings in four are small, so that they stay in their
// tables.
FrameBuilder::Bytes randomFrame(std::mt19937& random, char function) {
    FrameBuilder frame(function);
    for (std::size_t position = 0; position < FrameBuilder::kSize; ++position) {
        const bool isMarker = position == 2 || (position >= 8 && position <= 10);
        const auto drawn = static_cast<std::uint32_t>(random());
        const bool isSmall = position >= 3 && position <= 7 && drawn % 4 != 0;
        if (!isMarker) {
            frame.byte(position, static_cast<std::uint8_t>((drawn >> 8) % (isSmall ? 9 : 256)));
        }
    }
    return frame.bytes();
}

class RandomFrames : public ::testing::TestWithParam<char> {};

TEST_P(RandomFrames, DecodeAsExpected) {
    constexpr unsigned kFrames = 40'000;
    std::mt19937 random(20'150'000U + static_cast<unsigned char>(GetParam()));
    for (unsigned i = 0; i < kFrames; ++i) {
        const std::string found = disagreement(randomFrame(random, GetParam()));
        ASSERT_EQ(found, "") << "random frame " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(KV3820protocal, RandomFrames, ::testing::Values('1', '2', '3', '4', '5', '6'),
                         [](const auto& function) { return std::string("Function") + function.param; });

// Every value of the settings, status and flag bytes together with every other: what a one-byte sweep from
// two starting points cannot reach.
TEST(KV3820protocal, DecodesEveryFlagByteWithEveryStatusByteAsExpected) {
    for (char function = '1'; function <= '6'; ++function) {
        FrameBuilder frame = withSettings(quiet(function), 2, 1, 1, 1);
        for (unsigned status = 0; status < 256; ++status) {
            for (unsigned flags = 0; flags < 256; ++flags) {
                frame.status(static_cast<std::uint8_t>(status));
                frame.noDataOverload(static_cast<std::uint8_t>(flags));
                ASSERT_EQ(disagreement(frame.bytes()), "");
            }
        }
    }
}

TEST(KV3820protocal, DecodesEveryRcdModeWithEveryMainAttributeAsExpected) {
    for (unsigned mode = 0; mode < 8; ++mode) {
        for (unsigned attribute = 0; attribute < 256; ++attribute) {
            for (const unsigned flags : {0x00U, 0x01U, 0x10U, 0x11U}) {
                FrameBuilder frame = withSettings(quiet('6'), static_cast<std::uint8_t>(mode), 2, 1, 0);
                frame.reading(1, 283, static_cast<std::uint8_t>(attribute));
                frame.noDataOverload(static_cast<std::uint8_t>(flags));
                ASSERT_EQ(disagreement(frame.bytes()), "");
            }
        }
    }
}

TEST(KV3820protocal, DecodesEveryMagnitudeOfEveryReadingAsExpected) {
    for (const char function : {'2', '4', '5', '6'}) {
        FrameBuilder frame = withSettings(quiet(function), 1, 0, 0, 0);
        for (unsigned magnitude = 0; magnitude < 65536; ++magnitude) {
            const auto low = static_cast<std::uint16_t>(magnitude);
            const auto decimals = static_cast<std::uint8_t>(magnitude % 4);
            frame.reading(1, low, decimals);
            frame.reading(2, static_cast<std::uint16_t>(~low), static_cast<std::uint8_t>(0x80 + decimals));
            frame.reading(3, low, static_cast<std::uint8_t>(0x80 + decimals));
            frame.reading(4, low, decimals);
            frame.wires(low, static_cast<std::uint16_t>(~low));
            ASSERT_EQ(disagreement(frame.bytes()), "");
        }
    }
}

}  // namespace
}  // namespace kestrix::protocol
