#include "link/FrameListener.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/FrameBuilder.h"

namespace kestrix::link {
namespace {

using testing::FrameBuilder;
using Bytes = std::vector<std::uint8_t>;

Bytes frame() {
    const auto bytes = FrameBuilder('1').bytes();
    return {bytes.begin(), bytes.end()};
}

class FrameListenerTest : public ::testing::Test {
  protected:
    std::unique_ptr<platform::Listener> listener_ = makeFrameListener();
};

TEST_F(FrameListenerTest, CountsWholeFramesInAnyPieces) {
    Bytes bytes = frame();
    bytes.insert(bytes.end(), bytes.begin(), bytes.end());
    EXPECT_EQ(listener_->hear(std::span(bytes).first(35)), 0U);
    EXPECT_EQ(listener_->undecided(), 35U);
    EXPECT_EQ(listener_->hear(std::span(bytes).subspan(35)), 2U);
    EXPECT_EQ(listener_->undecided(), 0U);
}

TEST_F(FrameListenerTest, NoiseIsNoFrameAndStaysBounded) {
    for (int i = 0; i < 10'000; ++i) EXPECT_EQ(listener_->hear(Bytes(100, 0x7E)), 0U);
    EXPECT_LE(listener_->undecided(), 3000U);
}

TEST_F(FrameListenerTest, StartBytesWithoutTheMarkerAreNoFrame) {
    Bytes noise = frame();
    noise[9] ^= 1;
    EXPECT_EQ(listener_->hear(noise), 0U);
    EXPECT_EQ(listener_->undecided(), 0U);
}

TEST_F(FrameListenerTest, ATesterAtAnUnknownFunctionIsHeard) {
    Bytes unknown = frame();
    unknown[10] = 0x6F;
    EXPECT_EQ(listener_->hear(unknown), 1U);
}

TEST_F(FrameListenerTest, AFrameAtAnOddDigitIsHeardAndItsBytesAreUndecidedUntilThen) {
    Bytes shifted(37, 0x00);
    const Bytes bytes = frame();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        shifted[i] = static_cast<std::uint8_t>(shifted[i] | bytes[i] >> 4);
        shifted[i + 1] = static_cast<std::uint8_t>(bytes[i] << 4);
    }
    EXPECT_EQ(listener_->hear(std::span(shifted).first(36)), 0U);
    EXPECT_EQ(listener_->undecided(), 36U);
    EXPECT_EQ(listener_->hear(std::span(shifted).subspan(36)), 1U);
    EXPECT_EQ(listener_->undecided(), 1U);  // half a byte is left
}

}  // namespace
}  // namespace kestrix::link
