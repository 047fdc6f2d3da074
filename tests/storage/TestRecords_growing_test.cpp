// A test record that is there before its measurements.
#include <gtest/gtest.h>

#include "tests/storage/TestRecordsFixture.h"

namespace kestrix::storage {
namespace {

using Call = testing::FailingVfs::Call;

class GrowingRecordTest : public TestRecordsFixture {
  protected:
    GrowingRecord growing_{dao_, typed()};

    static RecordData typed() {
        RecordData record;
        record.projectName = "Plant";
        record.company = "Volt";
        return record;
    }

    static MeasureData measuredAt(int number, const std::string& time) {
        MeasureData measure = measurement(number);
        measure.dateTime = time;
        return measure;
    }
};

TEST_F(GrowingRecordTest, IsThereWithoutMeasurementsFirst) {
    EXPECT_EQ(growing_.begin("2024-06-03 09:00:00"), (Outcome{true, "", 1}));
    RecordData expected = completed(typed(), "2024-06-03 09:00:00");
    expected.recordId = 1;
    EXPECT_EQ(dao_.findRecordForm(), std::vector<RecordData>{expected});
    EXPECT_EQ(growing_.record(), expected);
}

TEST_F(GrowingRecordTest, EachMeasurementIsOneOfItsAtOnceAndNeverUnsaved) {
    record(1);
    ASSERT_TRUE(growing_.begin("2024-06-03 09:00:00").done);
    EXPECT_EQ(growing_.add(measuredAt(1, "2024-06-03 09:00:07"), {}), (Outcome{true, "", 2}));
    EXPECT_EQ(growing_.add(measuredAt(2, "2024-06-04 10:00:00"), {}), (Outcome{true, "", 3}));
    ServiceDao other(folder_);
    const RecordData row = other.findRecordofId(1).at(0);
    EXPECT_EQ(row, growing_.record());
    EXPECT_EQ(row.samples, 2);
    EXPECT_EQ(row.startTime, "2024-06-03 09:00:07") << "that of the first measurement";
    EXPECT_EQ(row.endTime, "2024-06-03 ");
    EXPECT_EQ(row.dates, "09:00:07");
    const std::vector<MeasureData> rows = other.findMeasureofId(1);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows.at(1).recordName, "Plant");
    EXPECT_EQ(rows.at(1).dateTime, "2024-06-04 10:00:00");
    EXPECT_EQ(other.findMeasureForm(false).size(), 1U);
}

TEST_F(GrowingRecordTest, AMeasurementThatCannotBeStoredIsNotCounted) {
    ASSERT_TRUE(growing_.begin("2024-06-03 09:00:00").done);
    ASSERT_TRUE(growing_.add(measurement(1), {}).done);
    const auto before = everything();
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    expectWarnings(kStatementFailed, 1);
    EXPECT_EQ(growing_.add(measurement(2), {}).reason, "the disk is full (database or disk is full)");
    vfs_.heal();
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(growing_.add(measurement(3), {}), (Outcome{true, "", 2}));
    EXPECT_EQ(dao_.findRecordofId(1).at(0).samples, 2);
}

TEST_F(GrowingRecordTest, TakesNothingWhileItIsDeletedAndGoesOnOnceItIsPutBack) {
    ASSERT_TRUE(growing_.begin("2024-06-03 09:00:00").done);
    ASSERT_TRUE(growing_.add(measurement(1), {}).done);
    ServiceDao other(folder_);
    DeletedRecord deleted;
    ASSERT_TRUE(deleteRecord(other, 1, deleted).done);
    EXPECT_EQ(growing_.add(measurement(2), {}), (Outcome{false, "the test record is no longer there", 0}));
    EXPECT_TRUE(everything().empty());
    ASSERT_TRUE(putBackRecord(other, deleted).done);
    EXPECT_TRUE(growing_.add(measurement(3), {}).done);
    EXPECT_EQ(dao_.findRecordofId(1).at(0).samples, 2);
    EXPECT_EQ(dao_.findMeasureofId(1).size(), 2U);
}

TEST_F(GrowingRecordTest, OneThatCannotBeMadeSaysWhy) {
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    expectWarnings(kStatementFailed, 1);
    EXPECT_EQ(growing_.begin("2024-06-03 09:00:00").reason, "the disk is full (database or disk is full)");
    vfs_.heal();
    EXPECT_EQ(growing_.add(measurement(1), {}).reason, "the test record is no longer there");
    EXPECT_TRUE(everything().empty());
}

}  // namespace
}  // namespace kestrix::storage
