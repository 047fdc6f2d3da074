// From the tester's bytes to the labels, through a link of its own.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/live/MainViewFixture.h"
#include "tests/storage/Connection.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::live {
namespace {

using testing::FrameBuilder;

class FramesOnScreenTest : public MainViewFixture {
  protected:
    FramesOnScreenTest() {
        start();
        tester_ = tester(1);
        source_->appear(tester_);
    }
    void send(const FrameBuilder& frame) { source_->line.receive(frame.bytes()); }
    std::string first() const {
        return screen_->D1Value.text().toStdString() + " " + screen_->D1Unit.text().toStdString();
    }
    std::string second() const {
        return screen_->D2Value.text().toStdString() + " " + screen_->D2Unit.text().toStdString();
    }
    platform::AccessoryPtr tester_;
};

TEST_F(FramesOnScreenTest, AFrameEndsInTheLabels) {
    EXPECT_EQ(shownLabels(*screen_), "values1-6");
    send(FrameBuilder('2').reading(1, 123, 0x12).reading(2, 500, 0x00).alarm(0x01));
    EXPECT_EQ(shownLabels(*screen_), "D1 D2 values1-6");
    EXPECT_EQ(first(), "1.23 GΩ");
    EXPECT_EQ(second(), "500 V");
    EXPECT_EQ(screen_->litTitle(), &screen_->fun1);
    EXPECT_FALSE(screen_->blueImage.hidden());
    EXPECT_EQ(screen_->strfunction(), "INSULATION");
    EXPECT_EQ(screen_->intfunctions(), '2');
    EXPECT_EQ(screen_->results(), "1.23GΩ,500V");
}

TEST_F(FramesOnScreenTest, TheLastOfManyFramesIsShown) {
    std::vector<std::uint8_t> bytes;
    for (std::uint16_t value = 1; value <= 50; ++value) {
        const FrameBuilder::Bytes frame = FrameBuilder('1').reading(1, value, 0x01).bytes();
        bytes.insert(bytes.end(), frame.begin(), frame.end());
    }
    source_->line.receive(bytes);
    EXPECT_EQ(first(), "5.0 Ω");
}

TEST_F(FramesOnScreenTest, AFrameThatHoldsNothingUnlightsTheTitleAndEmptiesTheReadings) {
    send(FrameBuilder('1').reading(1, 5, 0x01));
    send(FrameBuilder('9'));
    EXPECT_EQ(screen_->litTitle(), nullptr);
    EXPECT_EQ(first(), " ");
    EXPECT_EQ(screen_->results(), "");
}

TEST_F(FramesOnScreenTest, AnAutomaticSequenceFillsItsRowsFrameByFrame) {
    for (std::uint16_t number = 1; number <= 13; ++number)
        send(FrameBuilder('6').setting(1, 0).reading(1, number, 0x00).alarm(0x02));
    EXPECT_EQ(screen_->intfunctions(), '7');
    EXPECT_EQ(tripTimes(*screen_), "[3][5][7][9][11][13]");
    EXPECT_EQ(shownLabels(*screen_), "rows1-4 rows5-6 value6");
    EXPECT_TRUE(screen_->results().starts_with("x1/2 0° :3ms,x1/2 180°:5ms,x1  0° :7ms,x1  180°:9ms,"));
}

// Each column as hexadecimal digits or as its text, separated by bars.
TEST_F(FramesOnScreenTest, APressKeepsWhatTheTesterSentBesideItsMeasurement) {
    std::vector<FrameBuilder> sent;
    for (std::uint16_t number = 1; number <= 13; ++number)
        sent.push_back(FrameBuilder('6').setting(1, 0).reading(1, number, 0x00).alarm(0x02).unusedBytes(7));
    for (const FrameBuilder& frame : sent) send(frame);
    screen_->btnRecord.press();
    send(FrameBuilder('1').reading(1, 46, 0x02));
    send(FrameBuilder('1').reading(1, 46, 0x02));
    screen_->btnRecord.press();

    std::string tripTimes;
    for (std::size_t row = 0; row < 6; ++row)
        tripTimes += "0" + std::to_string(row + 1) + sent[2 * row + 2].hexText();
    storage::Connection file(documents_.filePath(QStringLiteral("kestrix.sqlite")).toStdString());
    const auto rows = file.rows(
        "SELECT dataId, event, lower(hex(frame)), lower(hex(tripTimes)), equalFrames, source, accessory, "
        "origin, "
        "utc FROM evidence");
    ASSERT_EQ(rows.size(), 2U);
    const std::string utc = std::to_string(
        std::chrono::duration_cast<std::chrono::milliseconds>(now_.time_since_epoch()).count());
    EXPECT_EQ(rows[0], (std::vector<std::string>{"1", "recorded", sent.back().hexText(), tripTimes, "1",
                                                 "fake", tester_->name, "measured", utc}));
    EXPECT_EQ(rows[1],
              (std::vector<std::string>{"2", "recorded", FrameBuilder('1').reading(1, 46, 0x02).hexText(), "",
                                        "2", "fake", tester_->name, "measured", utc}));
}

TEST_F(FramesOnScreenTest, ADisconnectBlanksTheDisplayAndTheTestersReturnShowsItsFramesAgain) {
    send(FrameBuilder('1').reading(1, 5, 0x01));
    source_->disappear(tester_);
    EXPECT_EQ(shownLabels(*screen_), "values1-6");
    EXPECT_EQ(screen_->litTitle(), nullptr);
    EXPECT_FALSE(screen_->lblNoCon.hidden());
    tester_ = tester(2);
    source_->appear(tester_);
    EXPECT_TRUE(screen_->lblNoCon.hidden());
    send(FrameBuilder('1').reading(1, 6, 0x01));
    EXPECT_EQ(first(), "0.6 Ω");
    EXPECT_EQ(shownLabels(*screen_), "D1 D2 values1-6");
}

TEST_F(FramesOnScreenTest, ARecordedFrameIsInTheDatabaseWhenThePressReturns) {
    send(FrameBuilder('3').reading(1, 12, 0x02).reading(2, 200, 0x00));
    screen_->btnRecord.press();
    const auto stored = storedMeasures();
    ASSERT_EQ(stored.size(), 1U);
    EXPECT_EQ(stored[0].function, "LOW OHM");
    EXPECT_EQ(stored[0].result, "0.12Ω,200mA");
    EXPECT_EQ(stored[0].result, screen_->array.row(0).Result);
}

}  // namespace
}  // namespace kestrix::live
