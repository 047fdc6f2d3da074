// The texts of a measurement are derived again from the frames that it was read from.
#include "display/Derivation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "display/Steps.h"
#include "protocol/KV3820protocal.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::display {
namespace {

using Frame = protocol::FrameBytes;
using testing::FrameBuilder;

#ifdef KESTRIX_SANITIZE
constexpr int kFrames = 20'000;  // each takes several times as long
#else
constexpr int kFrames = 1'000'000;
#endif

protocol::MeterReading decoded(const Frame& frame) {
    protocol::KV3820protocal decoder;
    decoder.initFromNSdata(frame);
    return decoder.getAllDataStructValue();
}

StoredTexts stored(const Display& display) {
    return {display.strfunction.value_or(""), display.parameters, display.results};
}

class Derivation : public ::testing::Test {
  protected:
    void receive(const Frame& frame) { recordCame(display_, decoded(frame)); }
    std::size_t tripTimes() const {
        return static_cast<std::size_t>(std::count_if(display_.measured.tripTimes.begin(),
                                                      display_.measured.tripTimes.end(),
                                                      [](const auto& frame) { return frame.has_value(); }));
    }
    // Of a running RCD auto test, whose setting 2 changes now and then.
    Frame anyRcdFrame() {
        if (random_() % 50 == 0) mode_ = static_cast<std::uint8_t>(random_() % 4);
        return FrameBuilder('6')
            .setting(1, 0)
            .setting(2, mode_)
            .reading(1, static_cast<std::uint16_t>(random_()), static_cast<std::uint8_t>(random_() % 16))
            .alarm(0x02)
            .unusedBytes(static_cast<std::uint8_t>(random_()))
            .bytes();
    }
    Frame anyFrame(char function) {
        FrameBuilder frame(function);
        for (std::size_t at = 3; at < FrameBuilder::kSize; ++at) {
            const bool fixed = at >= 8 && at <= 10;  // marker and function
            if (!fixed) frame.byte(at, static_cast<std::uint8_t>(random_()));
        }
        return frame.bytes();
    }

    std::mt19937 random_{11};  // NOLINT(cert-msc51-cpp)
    std::uint8_t mode_ = 0;
    Display display_;
};

TEST_F(Derivation, OfAReadingIsByItsFrameAlone) {
    receive(FrameBuilder('2').setting(1, 1).reading(1, 1234, 0).bytes());
    ASSERT_TRUE(canBeRecorded(display_));
    EXPECT_EQ(derivedFrom(display_.measured), stored(display_));
    EXPECT_NE(stored(display_).results, "");
}

TEST_F(Derivation, OfARcdSequenceIsByTheFramesOfItsTripTimes) {
    for (int i = 0; i < 13; ++i) receive(anyRcdFrame());
    ASSERT_EQ(display_.intfunctions, '7');
    EXPECT_GT(tripTimes(), 0U);
    EXPECT_EQ(derivedFrom(display_.measured), stored(display_));
    MeasuredFrames other = display_.measured;
    for (auto& frame : other.tripTimes) frame.reset();
    EXPECT_NE(derivedFrom(other).results, stored(display_).results);
}

TEST_F(Derivation, KeepsNoFrameOfATripTimeThatWasTakenAway) {
    for (int i = 0; i < 7; ++i) receive(anyRcdFrame());
    ASSERT_GT(tripTimes(), 0U);
    receive(FrameBuilder('2').bytes());
    receive(FrameBuilder('2').bytes());
    EXPECT_EQ(tripTimes(), 0U);
}

TEST_F(Derivation, CountsTheEqualFramesInARow) {
    const Frame one = FrameBuilder('1').reading(1, 46, 0).bytes();
    const Frame other = FrameBuilder('1').reading(1, 47, 0).bytes();
    for (std::uint32_t count : {1U, 2U, 3U}) {
        receive(one);
        EXPECT_EQ(display_.measured.equalInARow, count);
    }
    receive(other);
    EXPECT_EQ(display_.measured.equalInARow, 1U);
    receive(one);
    EXPECT_EQ(display_.measured.equalInARow, 1U);
    EXPECT_EQ(display_.measured.reading, one);
}

TEST_F(Derivation, TwoDisplaysThatShowTheSameAreEqualWhateverFramesTheyCameFrom) {
    Display other = display_;
    receive(FrameBuilder('1').reading(1, 46, 0).unusedBytes(1).bytes());
    recordCame(other, decoded(FrameBuilder('1').reading(1, 46, 0).unusedBytes(2).bytes()));
    EXPECT_NE(display_.measured.reading, other.measured.reading);
    EXPECT_TRUE(display_ == other);
}

TEST_F(Derivation, CountsAnewBehindADropOfTheLink) {
    const Frame one = FrameBuilder('1').reading(1, 46, 0).bytes();
    receive(one);
    receive(one);
    linkStateChanged(display_, 0);
    linkStateChanged(display_, 1);
    receive(one);
    EXPECT_EQ(display_.measured.equalInARow, 1U);
}

TEST_F(Derivation, OfATestOfOneTripTimeBehindASequenceHasNoOther) {
    for (int i = 0; i < 13; ++i) receive(anyRcdFrame());
    ASSERT_GT(tripTimes(), 0U);
    receive(FrameBuilder('6').setting(1, 2).reading(1, 198, 1).bytes());
    ASSERT_EQ(display_.intfunctions, '6');
    EXPECT_EQ(tripTimes(), 0U);
    EXPECT_EQ(derivedFrom(display_.measured), stored(display_));
}

// Random frames, most of one function after the other, with drops of the link, and a press behind any of
// them.
TEST_F(Derivation, OfAnythingThatWasRecordedIsWhatWasStored) {
    int pressed = 0;
    int sequences = 0;
    char function = '1';
    for (int i = 0; i < kFrames; ++i) {
        if (random_() % 20 == 0) function = static_cast<char>('0' + random_() % 8);
        if (random_() % 500 == 0) linkStateChanged(display_, static_cast<std::int32_t>(random_() % 2));
        if (random_() % 1000 == 0) clearRcdValues(display_);
        receive(function == '6' && random_() % 4 != 0 ? anyRcdFrame() : anyFrame(function));
        if (!canBeRecorded(display_)) continue;
        ++pressed;
        sequences += tripTimes() > 1 ? 1 : 0;
        ASSERT_EQ(derivedFrom(display_.measured), stored(display_)) << "frame " << i;
    }
    EXPECT_GT(pressed, kFrames / 2);
    EXPECT_GT(sequences, kFrames / 100);
}

}  // namespace
}  // namespace kestrix::display
