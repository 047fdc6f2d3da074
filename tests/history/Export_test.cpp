#include "history/Export.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "tests/history/Exported.h"

namespace kestrix::history {
namespace {

using ::testing::StartsWith;
using namespace std::chrono_literals;

constexpr std::chrono::sys_seconds kMoment =
    std::chrono::sys_days(std::chrono::year(2026) / 3 / 4) + 5h + 6min + 7s;

class Exporting : public storage::QuickStorageFixture {
  protected:
    // The identity of the new record.
    std::int64_t addRecord(storage::ServiceDao& dao, int measurements) {
        dao.addRecordForm(storage::testRecord());
        const std::int64_t recordId = dao.lastOutcome().identity;
        for (int i = 1; i <= measurements; ++i) {
            storage::MeasureData measure = storage::measurement(i);
            measure.recordId = recordId;
            measure.recordName = "House 7";
            dao.addMeasureForm(measure);
        }
        return recordId;
    }
    ExportedRecord found(storage::ServiceDao& dao, std::int64_t recordId) {
        ExportedRecord record;
        EXPECT_EQ(findExportedRecord(dao, recordId, record), storage::Outcome{});
        record.timeStamp = kStamp;
        return record;
    }
    QStringList names() const {
        QStringList all = QDir(folder_.path()).entryList(QDir::Files);
        all.removeAll(QStringLiteral("kestrix.sqlite"));
        all.removeAll(QStringLiteral("kestrix.sqlite-journal"));
        return all;
    }
    static std::string contentOf(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }
};

TEST_F(Exporting, TheTimeStampIsTheMomentInTheZone) {
    EXPECT_EQ(getExportTime(kMoment, "UTC"), "20260304050607");
    EXPECT_EQ(getExportTime(kMoment, "Asia/Tokyo"), "20260304140607");
    EXPECT_EQ(getExportTime(std::chrono::sys_days(std::chrono::year(2025) / 12 / 31), "UTC"),
              "20251231000000")
        << "of the calendar year, not of the week's";
}

TEST_F(Exporting, WhatTheDatabaseHoldsIsInTheFileOfThatSecond) {
    storage::ServiceDao dao = daoWithTables();
    const ExportedRecord record = found(dao, addRecord(dao, 2));
    const ExportedFile file = exportIntoFolder(record, kTextFormat, folder_);
    EXPECT_EQ(file.outcome, storage::Outcome{});
    EXPECT_EQ(file.path, folder_.filePath(QStringLiteral("20260304050607.csv")));
    EXPECT_EQ(contentOf(file.path), written(kTextFormat, record));
    EXPECT_EQ(names(), QStringList(QStringLiteral("20260304050607.csv")));
}

TEST_F(Exporting, TheSecondExportOfASecondReplacesTheFirst) {
    storage::ServiceDao dao = daoWithTables();
    const std::int64_t longOne = addRecord(dao, 3);
    const std::int64_t shortOne = addRecord(dao, 1);
    ASSERT_TRUE(exportIntoFolder(found(dao, longOne), kTextFormat, folder_).outcome.done);
    const ExportedFile second = exportIntoFolder(found(dao, shortOne), kTextFormat, folder_);
    EXPECT_EQ(contentOf(second.path), written(kTextFormat, found(dao, shortOne)));
    EXPECT_EQ(names().size(), 1);
}

TEST_F(Exporting, EachFormatHasItsExtension) {
    storage::ServiceDao dao = daoWithTables();
    const ExportedRecord record = found(dao, addRecord(dao, 1));
    EXPECT_TRUE(exportIntoFolder(record, kJsonFormat, folder_).path.endsWith(QStringLiteral("07.json")));
    EXPECT_TRUE(exportIntoFolder(record, kCsvFormat, folder_).path.endsWith(QStringLiteral("07.csv")));
}

TEST_F(Exporting, ARecordThatIsNotThereHasNoLinesOfItsOwn) {
    storage::ServiceDao dao = daoWithTables();
    const ExportedRecord record = found(dao, 7);
    EXPECT_FALSE(record.record.has_value());
    EXPECT_EQ(written(kJsonFormat, record), "{\"measurements\":[\n]}\n");
}

TEST_F(Exporting, ADatabaseThatCannotBeReadIsTheReason) {
    storage::ServiceDao dao(folder_);  // without tables
    ExportedRecord record;
    EXPECT_THAT(findExportedRecord(dao, 1, record).reason, StartsWith("the database in "));
}

// The rows of one that goes away meanwhile.
TEST_F(Exporting, MeasurementsThatCannotBeReadLeaveNoFileAndAreSaidInTheLog) {
    storage::ServiceDao dao = daoWithTables();
    const ExportedRecord record = found(dao, addRecord(dao, 1));
    dao.execSql("DROP TABLE measurefrom");
    testing::expectWarning("the test record was not exported: the database in " +
                           folder_.path().toStdString() + " has no tables");
    EXPECT_FALSE(exportIntoFolder(record, kTextFormat, folder_).outcome.done);
    EXPECT_EQ(names(), QStringList());
}

TEST_F(Exporting, AFailureIsOneLineInTheLog) {
    storage::ServiceDao dao = daoWithTables();
    const ExportedRecord record = found(dao, addRecord(dao, 1));
    folder_.setGuard([] { return std::string("another window has the folder"); });
    testing::expectWarning("the test record was not exported: another window has the folder");
    const ExportedFile file = exportIntoFolder(record, kTextFormat, folder_);
    EXPECT_EQ(file.outcome.reason, "another window has the folder");
    EXPECT_EQ(file.path, folder_.filePath(QStringLiteral("20260304050607.csv")));
}

TEST_F(Exporting, AStampThatIsNoneNamesNoFile) {
    const std::vector<storage::MeasureData> none;
    ExportedRecord record = exportOf(none);
    for (const char* stamp : {"", "../2026030405060", "2026030405060", "202603040506070", "2026030405060x"}) {
        record.timeStamp = stamp;
        testing::expectWarning("the test record was not exported: the time of the export cannot be written");
        EXPECT_FALSE(exportIntoFolder(record, kTextFormat, folder_).outcome.done) << stamp;
    }
    EXPECT_EQ(names(), QStringList());
}

TEST_F(Exporting, IntoANewFileThatTheUserNames) {
    const auto all = measurements(2);
    const QString path = temporary_.filePath(QStringLiteral("mine"));
    EXPECT_EQ(exportIntoNewFile(exportOf(all), kCsvFormat, path), storage::Outcome{});
    EXPECT_EQ(contentOf(path), written(kCsvFormat, exportOf(all)));
    EXPECT_FALSE(exportIntoNewFile(exportOf(all), kCsvFormat, path).done);
}

TEST_F(Exporting, OfSeveralRecordsTheLastOneCounts) {
    storage::ServiceDao dao(folder_);
    // A table of somebody else's making, without the rule that an identity is there once.
    dao.execSql(
        "CREATE TABLE recordfrom (dataId INTEGER, company, operators, addres, startTime, endTime, dates, "
        "samples, "
        "serial, projectname)");
    dao.execSql("INSERT INTO recordfrom (dataId, projectname) VALUES (1, 'first'), (1, 'last')");
    ExportedRecord record;
    EXPECT_EQ(findExportedRecord(dao, 1, record), storage::Outcome{});
    EXPECT_EQ(record.record->projectName, "last");
}

TEST_F(Exporting, AWalkOverMeasurementsGivesWhatFindingThemGives) {
    storage::ServiceDao dao = daoWithTables();
    const std::int64_t recordId = addRecord(dao, 5);
    addRecord(dao, 2);
    std::vector<storage::MeasureData> walked;
    dao.eachMeasureofId(recordId, [&walked](const storage::MeasureData& measure) {
        walked.push_back(measure);
        return true;
    });
    EXPECT_EQ(dao.lastOutcome(), storage::Outcome{});
    EXPECT_EQ(walked.size(), 5U);
    EXPECT_EQ(walked, dao.findMeasureofId(recordId));
}

TEST_F(Exporting, AWalkEndsWhereTheVisitorEndsIt) {
    storage::ServiceDao dao = daoWithTables();
    const std::int64_t recordId = addRecord(dao, 5);
    int visited = 0;
    dao.eachMeasureofId(recordId, [&visited](const storage::MeasureData&) { return ++visited < 2; });
    EXPECT_EQ(visited, 2);
    EXPECT_EQ(dao.lastOutcome(), storage::Outcome{});
    dao.addMeasureForm(storage::measurement(9));
    EXPECT_TRUE(dao.lastOutcome().done) << "nothing is locked any more";
}

}  // namespace
}  // namespace kestrix::history
