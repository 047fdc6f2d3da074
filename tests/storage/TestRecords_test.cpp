// Filing measurements under a new test record: all or nothing.
#include <gtest/gtest.h>

#include "tests/storage/TestRecordsFixture.h"

namespace kestrix::storage {
namespace {

using Call = testing::FailingVfs::Call;

constexpr const char* kNotUnsaved = "a measurement was saved elsewhere or deleted meanwhile";

class FilingMeasurements : public TestRecordsFixture {
  protected:
    void expectNothingWritten(const Outcome& outcome, const std::string& reason) {
        EXPECT_FALSE(outcome.done);
        EXPECT_EQ(outcome.reason, reason);
        EXPECT_EQ(outcome.identity, 0);
        EXPECT_EQ(everything(), before_);
        // Nothing stays open: another connection can write at once.
        Connection(path_).run("BEGIN IMMEDIATE; ROLLBACK");
    }
    std::vector<std::vector<std::string>> before_;
};

TEST(CompletedRecord, EmptyTextsGetWhatStandsForThemAndOthersStay) {
    const RecordData empty = completed({}, "2015-03-02 14:05:33");
    EXPECT_EQ(empty.projectName, " ");
    for (auto text : {&RecordData::company, &RecordData::addres, &RecordData::operators, &RecordData::serial})
        EXPECT_EQ(empty.*text, "---");
    RecordData typed = testRecord();
    EXPECT_EQ(completed(typed, typed.startTime), typed);
}

TEST(CompletedRecord, TheStartTimeIsCutBehindTheBlank) {
    const RecordData record = completed({}, "2015-03-02 14:05:33");
    EXPECT_EQ(record.startTime, "2015-03-02 14:05:33");
    EXPECT_EQ(record.endTime, "2015-03-02 ");
    EXPECT_EQ(record.dates, "14:05:33");
}

TEST(CompletedRecord, WithoutAStartTimeTheTimesSaySo) {
    const RecordData record = completed({}, std::nullopt);
    for (auto text : {&RecordData::startTime, &RecordData::endTime, &RecordData::dates})
        EXPECT_EQ(record.*text, "(null)");
}

TEST(CompletedRecord, AnyStartTimeIsCutBetweenCharacters) {
    struct Case {
        std::string startTime, endTime, dates;
    };
    for (const Case& expected : std::vector<Case>{{"", "", ""},
                                                  {"2015", "2015", ""},
                                                  {"2015-03-02 ", "2015-03-02 ", ""},
                                                  {"٢٠١٥-٠٣-٠٢ ١٤:٠٥", "٢٠١٥-٠٣-٠٢ ", "١٤:٠٥"},
                                                  {"\xF0\x9F\x95\x92"
                                                   "2015-03-02 14",
                                                   "\xF0\x9F\x95\x92"
                                                   "2015-03-02",
                                                   " 14"},
                                                  {"\x80\x80\x80", "\x80\x80\x80", ""}}) {
        const RecordData record = completed({}, expected.startTime);
        EXPECT_EQ(record.endTime, expected.endTime) << expected.startTime;
        EXPECT_EQ(record.dates, expected.dates) << expected.startTime;
    }
}

TEST_F(FilingMeasurements, GivesTheRecordsIdentityToEachInOrder) {
    const std::vector<MeasureData> unsaved = record(3);
    StatementTrace trace;
    ServiceDao dao(folder_);
    const Outcome outcome = fileMeasurements(dao, testRecord(), unsaved);
    EXPECT_EQ(outcome, (Outcome{true, "", 1}));
    std::vector<std::string> updates;
    for (const std::string& text : trace.take()) {
        if (text.starts_with("update")) updates.push_back(text);
    }
    EXPECT_EQ(updates, (std::vector<std::string>{
                           "update measurefrom set recordName='House 7',recordId='1' WHERE dataId = '1'",
                           "update measurefrom set recordName='House 7',recordId='1' WHERE dataId = '2'",
                           "update measurefrom set recordName='House 7',recordId='1' WHERE dataId = '3'"}));
    EXPECT_EQ(dao.findRecordForm().back().recordId, 1);
    EXPECT_EQ(dao.findMeasureofId(1).size(), 3U);
    EXPECT_TRUE(dao.findMeasureForm(false).empty());
}

TEST_F(FilingMeasurements, TwoRecordsOfOneNameKeepTheirsApart) {
    EXPECT_EQ(fileMeasurements(dao_, testRecord(), record(2)).identity, 1);
    EXPECT_EQ(fileMeasurements(dao_, testRecord(), record(1)).identity, 2);
    EXPECT_EQ(dao_.findMeasureofId(1).size(), 2U);
    EXPECT_EQ(dao_.findMeasureofId(2).size(), 1U);
}

TEST_F(FilingMeasurements, ARecordWithoutAnyIsWritten) {
    record(1);
    EXPECT_EQ(fileMeasurements(dao_, testRecord(), {}).identity, 1);
    EXPECT_EQ(dao_.findMeasureForm(false).size(), 1U);
}

TEST_F(FilingMeasurements, OneThatWasFiledMeanwhileUndoesTheSave) {
    const std::vector<MeasureData> seen = record(3);
    ServiceDao other(folder_);
    ASSERT_TRUE(fileMeasurements(other, testRecord(), {seen.at(1)}).done);
    before_ = everything();
    expectNothingWritten(fileMeasurements(dao_, testRecord(), seen), kNotUnsaved);
}

TEST_F(FilingMeasurements, OneThatWasDeletedMeanwhileUndoesTheSave) {
    const std::vector<MeasureData> seen = record(3);
    ServiceDao(folder_).DeleteMeasureFormData(3);
    before_ = everything();
    expectNothingWritten(fileMeasurements(dao_, testRecord(), seen), kNotUnsaved);
}

TEST_F(FilingMeasurements, NoneIsFiledTwice) {
    const std::vector<MeasureData> seen = record(1);
    before_ = everything();
    expectNothingWritten(fileMeasurements(dao_, testRecord(), {seen.front(), seen.front()}), kNotUnsaved);
}

TEST_F(FilingMeasurements, OneWhoseIdentityTheStatementsCannotHoldIsNotTakenForAnother) {
    record(1);
    Connection(path_).run(
        "INSERT INTO measurefrom SELECT 4294967297, recordId, dataName, function, "
        "parameters, result, dateTime, comments, recordName FROM measurefrom");
    before_ = everything();
    expectNothingWritten(fileMeasurements(dao_, testRecord(), {dao_.findMeasureForm(false).back()}),
                         kNotUnsaved);
}

TEST_F(FilingMeasurements, OneThatCameMeanwhileStaysUnsaved) {
    const std::vector<MeasureData> seen = record(2);
    ServiceDao(folder_).addMeasureForm(measurement(9));
    EXPECT_TRUE(fileMeasurements(dao_, testRecord(), seen).done);
    const std::vector<MeasureData> left = dao_.findMeasureForm(false);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left.front().dataName, "S_9");
}

TEST_F(FilingMeasurements, AFullDiskUndoesAllOfIt) {
    const std::vector<MeasureData> seen = record(40);
    before_ = everything();
    for (const char* file : {".sqlite", "-journal"}) {
        vfs_.fail(Call::Write, file, SQLITE_FULL);
        expectWarnings(kStatementFailed, 1);
        const Outcome outcome = fileMeasurements(dao_, testRecord(), seen);
        vfs_.heal();
        expectNothingWritten(outcome, "the disk is full (database or disk is full)");
    }
    EXPECT_EQ(fileMeasurements(dao_, testRecord(), seen).identity, 1) << "nothing of before counts";
}

TEST_F(FilingMeasurements, ADiskThatFailsAtTheEndUndoesAllOfIt) {
    const std::vector<MeasureData> seen = record(3);
    before_ = everything();
    vfs_.fail(Call::Sync, ".sqlite", SQLITE_IOERR_FSYNC);
    expectWarnings(kStatementFailed, 1);
    const Outcome outcome = fileMeasurements(dao_, testRecord(), seen);
    vfs_.heal();
    expectNothingWritten(outcome, "the disk reports an error (disk I/O error)");
}

TEST_F(FilingMeasurements, AnInsertThatFailsFilesUnderNoOlderRecord) {
    ASSERT_TRUE(fileMeasurements(dao_, testRecord(), record(1)).done);
    const std::vector<MeasureData> seen = record(2);
    Connection(path_).run(
        "CREATE TRIGGER no BEFORE INSERT ON recordfrom BEGIN SELECT RAISE(ABORT, 'no'); END");
    before_ = everything();
    expectWarnings(kStatementFailed, 1);
    expectNothingWritten(fileMeasurements(dao_, testRecord(), seen), "the database does not take it (no)");
}

TEST_F(FilingMeasurements, AnUpdateThatFailsUndoesTheRecordAndTheOnesBefore) {
    const std::vector<MeasureData> seen = record(3);
    Connection(path_).run(
        "CREATE TRIGGER no BEFORE UPDATE ON measurefrom WHEN old.dataId = 2 "
        "BEGIN SELECT RAISE(ABORT, 'no'); END");
    before_ = everything();
    expectWarnings(kStatementFailed, 1);
    expectNothingWritten(fileMeasurements(dao_, testRecord(), seen), "the database does not take it (no)");
}

TEST_F(FilingMeasurements, ALockOfAnotherProgramIsSaid) {
    const std::vector<MeasureData> seen = record(1);
    before_ = everything();
    Connection other(path_);
    other.run("BEGIN IMMEDIATE");
    expectWarnings(kStatementFailed, 1);
    const Outcome outcome = fileMeasurements(dao_, testRecord(), seen);
    other.run("ROLLBACK");
    expectNothingWritten(outcome, "another program holds the database (database is locked)");
}

TEST_F(FilingMeasurements, WhatTextsHoldComesBackUnchanged) {
    RecordData record = testRecord();
    record.projectName =
        "O'Brien's \"house\"; DROP TABLE recordfrom; -- \U0001F3E0 بيت " + std::string(100'000, 'x');
    record.company = std::string("a\0b\nc", 5);
    ASSERT_TRUE(fileMeasurements(dao_, record, this->record(1)).done);
    record.recordId = 1;
    EXPECT_EQ(dao_.findRecordofId(1), std::vector<RecordData>{record});
    EXPECT_EQ(dao_.findMeasureofId(1).at(0).recordName, record.projectName);
}

}  // namespace
}  // namespace kestrix::storage
