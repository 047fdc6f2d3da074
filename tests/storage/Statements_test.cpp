// Each operation's statements, as the engine sees them. They are written out here once more, on purpose.
#include "storage/Statements.h"

#include <gtest/gtest.h>

#include "tests/storage/StorageFixture.h"

namespace kestrix::storage {
namespace {

using Texts = std::vector<std::string>;

class Statements : public QuickStorageFixture {
  protected:
    StatementTrace trace_;
    ServiceDao dao_ = daoWithTables();
    Texts creation_ = trace_.take();
};

TEST_F(Statements, CreateTableMakesTheMeasurementsThenTheRecordsThenTheIndexes) {
    EXPECT_EQ(creation_,
              (Texts{"CREATE TABLE IF NOT EXISTS measurefrom (dataId INTEGER PRIMARY KEY "
                     "AUTOINCREMENT,recordId INTEGER, dataName varchar(30), function varchar(30), "
                     "parameters varchar(30), result varchar(30), dateTime varchar(30), comments "
                     "varchar(30), recordName varchar(30))",
                     "CREATE TABLE IF NOT EXISTS recordfrom (dataId INTEGER PRIMARY KEY "
                     "AUTOINCREMENT,company varchar(30), operators varchar(30), addres varchar(30), "
                     "startTime varchar(30), endTime varchar(20), dates varchar(20), samples INTEGER, "
                     "serial varchar(20), projectname varchar(30))",
                     "CREATE INDEX IF NOT EXISTS measurefrom_recordId ON measurefrom (recordId)",
                     "CREATE INDEX IF NOT EXISTS measurefrom_unsaved ON measurefrom (recordName) WHERE "
                     "recordName = ''"}));
}

TEST_F(Statements, AddMeasureForm) {
    dao_.addMeasureForm({9, 4, "S_1", "RCD", "30mA", "12ms", "2024-06-03 09:08:07", " ", "House"});
    EXPECT_EQ(trace_.take(),
              (Texts{"INSERT INTO 'measurefrom' ('recordId', 'dataName', 'function', 'parameters', "
                     "'result', 'dateTime', 'comments', 'recordName') VALUES ('4', 'S_1', 'RCD', '30mA', "
                     "'12ms', '2024-06-03 09:08:07', ' ', 'House')"}));
}

TEST_F(Statements, AddRecordForm) {
    dao_.addRecordForm({9, "House", "Volt", "Jo", "Main St", "start", "end", "dates", 12, "SN"});
    EXPECT_EQ(trace_.take(),
              (Texts{"INSERT INTO 'recordfrom' ('company', 'operators', 'addres', 'startTime', 'endTime', "
                     "'dates', 'samples', 'serial', 'projectname') VALUES ('Volt', 'Jo', 'Main St', "
                     "'start', 'end', 'dates', '12', 'SN', 'House')"}));
}

TEST_F(Statements, EveryFind) {
    dao_.findRecordForm();
    dao_.findRecordFormCount();
    dao_.findMeasureForm(true);
    dao_.findMeasureForm(false);
    dao_.findMeasureofId(3);
    dao_.findMeasureofDataId(4);
    dao_.findRecordofId(5);
    EXPECT_EQ(
        trace_.take(),
        (Texts{"SELECT * FROM recordfrom", "SELECT * FROM recordfrom", "SELECT * FROM measurefrom",
               "SELECT * FROM measurefrom WHERE recordName = ''",
               "SELECT *FROM measurefrom WHERE recordId = '3'", "SELECT *FROM measurefrom WHERE dataId = '4'",
               "SELECT *FROM recordfrom WHERE dataId = '5'"}));
}

TEST_F(Statements, UpdateMeasureForm) {
    dao_.updateMeasureForm("House", 7, 8);
    EXPECT_EQ(trace_.take(),
              (Texts{"update measurefrom set recordName='House',recordId='7' WHERE dataId = '8'"}));
}

TEST_F(Statements, BothDeletes) {
    dao_.DeleteMeasureFormData(3);
    dao_.DeleteRecordFormData(4);
    EXPECT_EQ(trace_.take(), (Texts{"DELETE FROM measurefrom WHERE dataId = '3'",
                                    "DELETE FROM recordfrom WHERE dataId = '4'"}));
}

TEST_F(Statements, ExecSqlRunsTheTextUnchanged) {
    dao_.execSql("delete  from recordfrom -- '%@' %d");
    EXPECT_EQ(trace_.take(), (Texts{"delete  from recordfrom -- '%@' %d"}));
}

TEST_F(Statements, IntegerIdsAreFormattedAsThirtyTwoBitSignedValues) {
    constexpr std::int64_t wide = 4294967296 + 5;
    constexpr std::int64_t past = 2147483648;
    dao_.findMeasureofId(wide);
    dao_.findMeasureofDataId(past);
    dao_.findRecordofId(-wide);
    dao_.updateMeasureForm("", wide, past);
    dao_.DeleteMeasureFormData(past);
    dao_.DeleteRecordFormData(wide);
    EXPECT_EQ(trace_.take(),
              (Texts{"SELECT *FROM measurefrom WHERE recordId = '5'",
                     "SELECT *FROM measurefrom WHERE dataId = '-2147483648'",
                     "SELECT *FROM recordfrom WHERE dataId = '-5'",
                     "update measurefrom set recordName='',recordId='5' WHERE dataId = '-2147483648'",
                     "DELETE FROM measurefrom WHERE dataId = '-2147483648'",
                     "DELETE FROM recordfrom WHERE dataId = '5'"}));
}

// How the engine carries out the statement that an operation really ran.
std::string planOf(const std::string& path, const Texts& ran) {
    EXPECT_EQ(ran.size(), 1U);
    const auto rows = Connection(path).rows("EXPLAIN QUERY PLAN " + ran.at(0));
    return rows.size() == 1 ? rows[0].at(3) : "several steps";
}

TEST_F(Statements, TheUnsavedMeasurementsAreFoundByTheirIndex) {
    dao_.findMeasureForm(false);
    EXPECT_EQ(planOf(path_, trace_.take()),
              "SEARCH measurefrom USING INDEX measurefrom_unsaved (recordName=?)");
}

TEST_F(Statements, TheMeasurementsOfARecordAreFoundByTheirIndex) {
    dao_.findMeasureofId(3);
    EXPECT_EQ(planOf(path_, trace_.take()),
              "SEARCH measurefrom USING INDEX measurefrom_recordId (recordId=?)");
}

}  // namespace
}  // namespace kestrix::storage
