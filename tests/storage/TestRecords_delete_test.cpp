// Deleting a test record with its measurements, and putting it back.
#include <gtest/gtest.h>

#include "tests/storage/TestRecordsFixture.h"

namespace kestrix::storage {
namespace {

using Call = testing::FailingVfs::Call;

// Record 1 with three measurements, record 2 with one, and one that is not saved.
class DeletingRecords : public TestRecordsFixture {
  protected:
    DeletedRecord deleted_;
    std::vector<std::vector<std::string>> before_;

    DeletingRecords() {
        EXPECT_TRUE(fileMeasurements(dao_, testRecord(), record(3)).done);
        EXPECT_TRUE(fileMeasurements(dao_, testRecord(), record(1)).done);
        record(1);
        before_ = everything();
    }
    void expectNothingDeleted(const Outcome& outcome, const std::string& reason) {
        EXPECT_EQ(outcome, (Outcome{false, reason, 0}));
        EXPECT_EQ(everything(), before_);
        EXPECT_EQ(deleted_.record, RecordData{});
        EXPECT_TRUE(deleted_.measurements.empty());
        Connection(path_).run("BEGIN IMMEDIATE; ROLLBACK");
    }
};

TEST_F(DeletingRecords, TheRecordGoesFirstAndItsMeasurementsFollowOneByOne) {
    StatementTrace trace;
    ServiceDao dao(folder_);
    EXPECT_TRUE(deleteRecord(dao, 1, deleted_).done);
    std::vector<std::string> texts;
    for (const std::string& text : trace.take()) {
        if (text.starts_with("DELETE") || text.starts_with("SELECT *FROM measure")) texts.push_back(text);
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"DELETE FROM recordfrom WHERE dataId = '1'",
                                               "SELECT *FROM measurefrom WHERE recordId = '1'",
                                               "DELETE FROM measurefrom WHERE dataId = '1'",
                                               "DELETE FROM measurefrom WHERE dataId = '2'",
                                               "DELETE FROM measurefrom WHERE dataId = '3'"}));
    EXPECT_EQ(deleted_.record.recordId, 1);
    EXPECT_EQ(deleted_.measurements.size(), 3U);
    EXPECT_EQ(dao.findRecordForm().size(), 1U);
    EXPECT_EQ(dao.findMeasureForm(true).size(), 2U);
    EXPECT_EQ(dao.findMeasureForm(false).size(), 1U);
}

TEST_F(DeletingRecords, OnePutBackIsAsItWas) {
    ASSERT_TRUE(deleteRecord(dao_, 1, deleted_).done);
    EXPECT_EQ(putBackRecord(dao_, deleted_), (Outcome{true, "", 1}));
    EXPECT_EQ(everything(), before_);
}

TEST_F(DeletingRecords, OnePutBackIsAsItWasWhateverItsTextsHold) {
    RecordData odd = testRecord();
    odd.company = std::string("O'Neill\0\n\U0001F3E0", 13);
    odd.projectName = std::string(100'000, '\'');
    ASSERT_TRUE(fileMeasurements(dao_, odd, dao_.findMeasureForm(false)).done);
    const auto before = dao_.findRecordofId(3);
    const auto measurements = dao_.findMeasureofId(3);
    ASSERT_TRUE(deleteRecord(dao_, 3, deleted_).done);
    ASSERT_TRUE(putBackRecord(dao_, deleted_).done);
    EXPECT_EQ(dao_.findRecordofId(3), before);
    EXPECT_EQ(dao_.findMeasureofId(3), measurements);
}

TEST_F(DeletingRecords, WhatCameMeanwhileStaysBesideOneThatIsPutBack) {
    ASSERT_TRUE(deleteRecord(dao_, 2, deleted_).done);
    const Outcome later = fileMeasurements(dao_, testRecord(), record(1));
    EXPECT_EQ(later.identity, 3) << "an identity is never given again";
    EXPECT_TRUE(putBackRecord(dao_, deleted_).done);
    EXPECT_EQ(dao_.findRecordForm().size(), 3U);
}

TEST_F(DeletingRecords, OneWithoutMeasurementsIsDeletedAndPutBack) {
    ASSERT_EQ(fileMeasurements(dao_, testRecord(), {}).identity, 3);
    EXPECT_TRUE(deleteRecord(dao_, 3, deleted_).done);
    EXPECT_EQ(everything(), before_);
    EXPECT_TRUE(putBackRecord(dao_, deleted_).done);
    EXPECT_EQ(dao_.findRecordofId(3).size(), 1U);
}

TEST_F(DeletingRecords, OneThatIsNotThereIsSaidAndNothingIsDeleted) {
    for (const std::int64_t id :
         {std::int64_t{7}, std::int64_t{0}, std::int64_t{-1}, std::int64_t{4294967297}})
        expectNothingDeleted(deleteRecord(dao_, id, deleted_), "the test record is no longer there");
}

TEST_F(DeletingRecords, MeasurementsThatLostTheirRecordAreNotDeletedUnseen) {
    dao_.DeleteRecordFormData(1);
    before_ = everything();
    expectNothingDeleted(deleteRecord(dao_, 1, deleted_), "the test record is no longer there");
}

TEST_F(DeletingRecords, AFullDiskUndoesAllOfIt) {
    vfs_.fail(Call::Write, "-journal", SQLITE_FULL);
    const Outcome outcome = deleteRecord(dao_, 1, deleted_);
    vfs_.heal();
    expectNothingDeleted(outcome, "the disk is full (database or disk is full)");
}

TEST_F(DeletingRecords, AMeasurementThatCannotBeDeletedKeepsTheRecord) {
    Connection(path_).run(
        "CREATE TRIGGER no BEFORE DELETE ON measurefrom WHEN old.dataId = 2 "
        "BEGIN SELECT RAISE(ABORT, 'no'); END");
    expectNothingDeleted(deleteRecord(dao_, 1, deleted_), "the database does not take it (no)");
}

TEST_F(DeletingRecords, ALockOfAnotherProgramIsSaid) {
    Connection other(path_);
    other.run("BEGIN IMMEDIATE");
    expectWarnings(kStatementFailed, 1);
    const Outcome outcome = deleteRecord(dao_, 1, deleted_);
    other.run("ROLLBACK");
    expectNothingDeleted(outcome, "another program holds the database (database is locked)");
}

TEST_F(DeletingRecords, OneWhosePlaceIsTakenIsNotPutBackInPart) {
    ASSERT_TRUE(deleteRecord(dao_, 1, deleted_).done);
    Connection(path_).run("INSERT INTO measurefrom (dataId) VALUES (2)");
    const auto before = everything();
    expectWarnings(kStatementFailed, 1);
    const Outcome outcome = putBackRecord(dao_, deleted_);
    EXPECT_EQ(outcome.reason, "the database does not take it (UNIQUE constraint failed: measurefrom.dataId)");
    EXPECT_EQ(everything(), before);
}

}  // namespace
}  // namespace kestrix::storage
