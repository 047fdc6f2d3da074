#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "protocol/DisplayTexts.h"
#include "protocol/MeterReading.h"

// The texts of the six auto-test results belong to an RCD record in mode "Auto" that still carries the
// function code '6'. No frame decodes to such a record (auto mode has the code '7'), so it is made by hand
// here.

namespace kestrix::protocol {
namespace {

MeterReading autoTestRecord() {
    MeterReading record;
    record.iFunction = '6';
    record.iSubFunc = 0;
    record.x120.strValD1 = "1.0";
    record.x12180.strValD1 = "2.0";
    record.x10.strValD1 = "28.3";
    record.x1180.strValD1 = "29.1";
    record.x50.strValD1 = "5.6";
    record.x5180.strValD1 = "7.8";
    return record;
}

std::vector<std::string> autoTestTexts(MeterReading record) {
    deriveTexts(0, record);
    return {record.strRCD1, record.strRCD2, record.strRCD3, record.strRCD4, record.strRCD5, record.strRCD6};
}

TEST(AutoTestTexts, AreTheTextsOfTheSixSlots) {
    EXPECT_EQ(autoTestTexts(autoTestRecord()),
              (std::vector<std::string>{"1.0", "2.0", "28.3", "29.1", "5.6", "7.8"}));
}

TEST(AutoTestTexts, AreReplacedWhereASlotHasNoNumber) {
    MeterReading record = autoTestRecord();
    record.x12180.OlData = 1;
    record.x1180.NoData = 1;
    EXPECT_EQ(autoTestTexts(record), (std::vector<std::string>{"1.0", "OL", "28.3", "----", "5.6", "7.8"}));
}

// Other than in the texts of the readings.
TEST(AutoTestTexts, NoDataWinsOverOverload) {
    MeterReading record = autoTestRecord();
    record.x50.OlData = 1;
    record.x50.NoData = 1;
    EXPECT_EQ(autoTestTexts(record), (std::vector<std::string>{"1.0", "2.0", "28.3", "29.1", "----", "7.8"}));
}

TEST(AutoTestTexts, StayEmptyInTheOtherRcdModesAndInAutoModeItself) {
    const std::vector<std::string> empty(6);
    MeterReading single = autoTestRecord();
    single.iSubFunc = 2;
    EXPECT_EQ(autoTestTexts(single), empty);
    MeterReading automatic = autoTestRecord();
    automatic.iFunction = '7';
    EXPECT_EQ(autoTestTexts(automatic), empty);
}

}  // namespace
}  // namespace kestrix::protocol
