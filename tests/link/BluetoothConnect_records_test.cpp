// From the session's bytes to the records.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "protocol/HexText.h"
#include "protocol/KV3820protocal.h"
#include "tests/link/BluetoothConnectFixture.h"
#include "tests/support/FrameBuilder.h"
#include "tests/support/LiteralExtraction.h"

namespace kestrix::link {
namespace {

using protocol::MeterReading;
using testing::FrameBuilder;
using Bytes = std::vector<std::uint8_t>;

// A frame that can be told from others by its reading.
FrameBuilder::Bytes frameOf(std::uint16_t magnitude) {
    return FrameBuilder('1').reading(1, magnitude, 0x01).bytes();
}

Bytes joined(std::initializer_list<Bytes> pieces) {
    Bytes all;
    for (const Bytes& piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
    return all;
}

Bytes bytesOf(const FrameBuilder::Bytes& frame, std::size_t from = 0, std::size_t to = FrameBuilder::kSize) {
    return {frame.begin() + static_cast<std::ptrdiff_t>(from),
            frame.begin() + static_cast<std::ptrdiff_t>(to)};
}

TEST_F(BluetoothConnectTest, OneFrameInOneNotificationIsOneRecordWithSuccess) {
    startConnected();
    source_->line.receive(frameOf(123));
    EXPECT_EQ(readings(), Log{"12.3"});
    EXPECT_EQ(keeper_.successes, std::vector<bool>{true});
    EXPECT_EQ(connect_.receiveDataString(), "");
    EXPECT_EQ(connect_.totalBytesRead(), 36U);
}

TEST_F(BluetoothConnectTest, AFrameSplitAfterByteTenComesWithTheSecondPart) {
    startConnected();
    source_->line.receive(bytesOf(frameOf(5), 0, 10));
    EXPECT_EQ(readings(), Log{});
    EXPECT_EQ(connect_.receiveDataString().size(), 20U);
    source_->line.receive(bytesOf(frameOf(5), 10));
    EXPECT_EQ(readings(), Log{"0.5"});
}

TEST_F(BluetoothConnectTest, TwoFramesBackToBackAreTwoRecordsInOrder) {
    startConnected();
    source_->line.receive(joined({bytesOf(frameOf(1)), bytesOf(frameOf(2))}));
    EXPECT_EQ(readings(), (Log{"0.1", "0.2"}));
}

TEST_F(BluetoothConnectTest, AMarkerAcrossTheNotificationBoundaryIsFound) {
    startConnected();
    source_->line.receive(Bytes{0xAA, 0xBB, 0x7E});
    EXPECT_EQ(readings(), Log{});
    EXPECT_EQ(connect_.receiveDataString(), "aabb7e");
    source_->line.receive(bytesOf(frameOf(77), 1));
    EXPECT_EQ(readings(), Log{"7.7"});
    EXPECT_EQ(connect_.receiveDataString(), "");
}

TEST_F(BluetoothConnectTest, APartialFrameFromBeforeADropIsContinuedAfterIt) {
    startConnected();
    source_->line.receive(bytesOf(frameOf(8), 0, 20));
    source_->disappear(tester_);
    source_->appear(accessory(2));
    source_->line.receive(bytesOf(frameOf(8), 20));
    EXPECT_EQ(readings(), Log{"0.8"});
}

TEST_F(BluetoothConnectTest, AFrameThatIsNotUnderstoodIsDeliveredAsTheZeroRecord) {
    startConnected();
    source_->line.receive(FrameBuilder('9').bytes());
    ASSERT_EQ(keeper_.records.size(), 1U);
    EXPECT_EQ(keeper_.records[0], MeterReading{});
    EXPECT_TRUE(keeper_.successes[0]);
}

TEST_F(BluetoothConnectTest, WithoutADelegateTheFrameIsConsumed) {
    startConnected();
    connect_.setDelegate(nullptr);
    source_->line.receive(frameOf(1));
    EXPECT_EQ(connect_.receiveDataString(), "");
    connect_.setDelegate(&keeper_);
    source_->line.receive(frameOf(2));
    EXPECT_EQ(readings(), Log{"0.2"});
}

TEST_F(BluetoothConnectTest, Parse3820DataDecodesOneFrameText) {
    const MeterReading record = connect_.parse3820Data(FrameBuilder('2').setting(1, 1).hexText());
    EXPECT_EQ(record.strfunction, "INSULATION");
    EXPECT_EQ(record.strF1Value, "250v");
}

// Any bytes, in any pieces, give the records of the literal extraction of the whole.
TEST_F(BluetoothConnectTest, AnyBytesInAnyFragmentationGiveTheSameRecords) {
    startConnected();
    std::mt19937 random(5);  // NOLINT(cert-msc51-cpp): the same bytes in every run
    for (int round = 0; round < 200; ++round) {
        Bytes stream;
        for (int piece = 0; piece < 10; ++piece) {
            Bytes frame = bytesOf(frameOf(static_cast<std::uint16_t>(random())));
            if (random() % 3 == 0)
                frame.erase(frame.begin() + static_cast<std::ptrdiff_t>(random() % frame.size()));
            if (random() % 3 == 0) frame[random() % frame.size()] = static_cast<std::uint8_t>(random());
            stream.insert(stream.end(), frame.begin(), frame.end());
        }
        std::string text(connect_.receiveDataString());
        protocol::appendHexText(text, stream);
        testing::LiteralExtraction literal;
        std::vector<MeterReading> expected;
        for (const std::string& frame : literal.receive(text))
            expected.push_back(protocol::KV3820protocal().initFromString(frame).return3820data());

        keeper_.records.clear();
        for (std::size_t at = 0; at < stream.size();) {
            const std::size_t length = std::min<std::size_t>(1 + random() % 90, stream.size() - at);
            source_->line.receive(std::span(stream).subspan(at, length));
            at += length;
        }
        ASSERT_EQ(keeper_.records, expected) << "round " << round;
    }
}

}  // namespace
}  // namespace kestrix::link
