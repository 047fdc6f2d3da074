#include "storage/ServiceDao.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <utility>

#include "tests/storage/StorageFixture.h"
#include "tests/support/ProcessState.h"

namespace kestrix::storage {
namespace {

class ServiceDaoTest : public QuickStorageFixture {
  protected:
    ServiceDao dao_ = daoWithTables();

    std::vector<std::string> namesOf(const std::vector<MeasureData>& measures) const {
        std::vector<std::string> names;
        names.reserve(measures.size());
        for (const MeasureData& measure : measures) names.push_back(measure.dataName);
        return names;
    }
};

using Names = std::vector<std::string>;

TEST_F(StorageFixture, TheFileIsMadeInTheDocumentsFolderWithoutTables) {
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path_)));
    ServiceDao dao(folder_);
    EXPECT_TRUE(QFile::exists(QString::fromStdString(path_)));
    EXPECT_FALSE(dao.hasTables());
    EXPECT_EQ(Connection(path_).value("SELECT count(*) FROM sqlite_master"), "0");
}

TEST_F(StorageFixture, OneTableIsNotBoth) {
    ServiceDao dao = daoWithTables();
    EXPECT_TRUE(dao.hasTables());
    dao.execSql("DROP TABLE recordfrom");
    EXPECT_FALSE(dao.hasTables());
    dao.createTable();
    EXPECT_TRUE(dao.hasTables());
    dao.execSql("DROP TABLE measurefrom");
    EXPECT_FALSE(dao.hasTables());
}

TEST_F(ServiceDaoTest, CreatingTheTablesAgainKeepsWhatTheyHold) {
    dao_.addMeasureForm(measurement(1));
    dao_.createTable();
    EXPECT_EQ(namesOf(dao_.findMeasureForm(true)), Names{"S_1"});
}

TEST_F(ServiceDaoTest, AMeasurementComesBackWithItsIdentity) {
    MeasureData expected = measurement(1);
    dao_.addMeasureForm(expected);
    expected.dataId = 1;
    EXPECT_EQ(dao_.findMeasureForm(true), std::vector{expected});
    EXPECT_EQ(dao_.findMeasureofDataId(1), std::vector{expected});
}

TEST_F(ServiceDaoTest, ARecordComesBackWithItsIdentity) {
    RecordData expected = testRecord();
    dao_.addRecordForm(expected);
    expected.recordId = 1;
    EXPECT_EQ(dao_.findRecordForm(), std::vector{expected});
    EXPECT_EQ(dao_.findRecordofId(1), std::vector{expected});
}

TEST_F(ServiceDaoTest, RowsComeInTheOrderInWhichTheyWereAdded) {
    for (int i = 1; i <= 12; ++i) {
        dao_.addMeasureForm(measurement(i));
        RecordData record;
        record.projectName = std::to_string(i);
        dao_.addRecordForm(record);
    }
    const auto measures = dao_.findMeasureForm(true);
    const auto records = dao_.findRecordForm();
    ASSERT_EQ(measures.size(), 12U);
    ASSERT_EQ(records.size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_EQ(measures[i].dataName, "S_" + std::to_string(i + 1));
        EXPECT_EQ(records[i].projectName, std::to_string(i + 1));
    }
}

TEST_F(ServiceDaoTest, TheIdentityOfADeletedRowIsNotGivenAgain) {
    dao_.addMeasureForm(measurement(1));
    dao_.DeleteMeasureFormData(1);
    dao_.addMeasureForm(measurement(2));
    EXPECT_TRUE(dao_.findMeasureofDataId(1).empty());
    EXPECT_EQ(namesOf(dao_.findMeasureofDataId(2)), Names{"S_2"});
}

TEST_F(ServiceDaoTest, FindRecordFormCountOnAnEmptyTableIsZero) {
    EXPECT_EQ(dao_.findRecordFormCount(), 0);
}

TEST_F(ServiceDaoTest, FindRecordFormCountIsTheNumberOfRows) {
    for (int count = 1; count <= 3; ++count) {
        dao_.addRecordForm(testRecord());
        EXPECT_EQ(dao_.findRecordFormCount(), count);
    }
}

TEST_F(ServiceDaoTest, FindMeasureFormWithTheFlagClearGivesExactlyTheRowsWhoseRecordNameIsEmpty) {
    for (int i = 1; i <= 4; ++i) dao_.addMeasureForm(measurement(i));
    dao_.updateMeasureForm("House", 1, 2);
    dao_.updateMeasureForm("0", 1, 3);
    EXPECT_EQ(namesOf(dao_.findMeasureForm(false)), (Names{"S_1", "S_4"}));
    EXPECT_EQ(namesOf(dao_.findMeasureForm(true)), (Names{"S_1", "S_2", "S_3", "S_4"}));
}

TEST_F(ServiceDaoTest, RowsSavedUnderASingleBlankAreNotAmongTheUnsavedOnes) {
    dao_.addMeasureForm(measurement(1));
    dao_.addMeasureForm(measurement(2));
    dao_.updateMeasureForm(" ", 1, 1);
    EXPECT_EQ(namesOf(dao_.findMeasureForm(false)), Names{"S_2"});
    EXPECT_EQ(dao_.findMeasureofDataId(1).at(0).recordName, " ");
}

TEST_F(ServiceDaoTest, UpdatingChangesNameAndRecordOfOneMeasurementOnly) {
    dao_.addMeasureForm(measurement(1));
    dao_.addMeasureForm(measurement(2));
    dao_.updateMeasureForm("House", 7, 2);
    MeasureData expected = measurement(2);
    expected.dataId = 2;
    expected.recordId = 7;
    expected.recordName = "House";
    EXPECT_EQ(dao_.findMeasureofDataId(2), std::vector{expected});
    EXPECT_EQ(dao_.findMeasureofDataId(1).at(0).recordId, 0);
    EXPECT_EQ(dao_.findMeasureofDataId(1).at(0).recordName, "");
}

TEST_F(ServiceDaoTest, AMeasurementThatIsNotThereIsNotUpdated) {
    dao_.addMeasureForm(measurement(1));
    dao_.updateMeasureForm("House", 7, 2);
    EXPECT_EQ(namesOf(dao_.findMeasureForm(false)), Names{"S_1"});
}

TEST_F(ServiceDaoTest, TheMeasurementsOfARecordAreItsOwn) {
    for (int i = 1; i <= 5; ++i) {
        dao_.addMeasureForm(measurement(i));
        dao_.updateMeasureForm("House", i % 2, i);
    }
    EXPECT_EQ(namesOf(dao_.findMeasureofId(1)), (Names{"S_1", "S_3", "S_5"}));
    EXPECT_EQ(namesOf(dao_.findMeasureofId(0)), (Names{"S_2", "S_4"}));
    EXPECT_TRUE(dao_.findMeasureofId(2).empty());
}

TEST_F(ServiceDaoTest, WhatIsNotThereIsFoundAsNothing) {
    EXPECT_TRUE(dao_.findMeasureForm(true).empty());
    EXPECT_TRUE(dao_.findMeasureForm(false).empty());
    EXPECT_TRUE(dao_.findMeasureofDataId(1).empty());
    EXPECT_TRUE(dao_.findRecordForm().empty());
    EXPECT_TRUE(dao_.findRecordofId(1).empty());
}

TEST_F(ServiceDaoTest, DeletingAMeasurementLeavesTheOthers) {
    for (int i = 1; i <= 3; ++i) dao_.addMeasureForm(measurement(i));
    dao_.DeleteMeasureFormData(2);
    dao_.DeleteMeasureFormData(9);
    EXPECT_EQ(namesOf(dao_.findMeasureForm(true)), (Names{"S_1", "S_3"}));
}

TEST_F(ServiceDaoTest, DeletingARecordLeavesItsMeasurementsAndTheOtherRecords) {
    dao_.addRecordForm(testRecord());
    dao_.addRecordForm(testRecord());
    dao_.addMeasureForm(measurement(1));
    dao_.updateMeasureForm("House", 1, 1);
    dao_.DeleteRecordFormData(1);
    EXPECT_TRUE(dao_.findRecordofId(1).empty());
    EXPECT_EQ(dao_.findRecordofId(2).size(), 1U);
    EXPECT_EQ(namesOf(dao_.findMeasureofId(1)), Names{"S_1"});
}

// An insert, queries and updates on one object: a record is saved so.
TEST_F(ServiceDaoTest, ItStaysUsableAfterAnyNumberOfQueries) {
    for (int i = 1; i <= 50; ++i) {
        dao_.addMeasureForm(measurement(i));
        dao_.addRecordForm(testRecord());
        EXPECT_EQ(dao_.findMeasureForm(false).size(), 1U);
        EXPECT_EQ(dao_.findRecordFormCount(), i);
        dao_.updateMeasureForm("House", i, i);
        EXPECT_EQ(dao_.findMeasureofId(i).size(), 1U);
    }
    EXPECT_EQ(dao_.findMeasureForm(true).size(), 50U);
}

TEST_F(ServiceDaoTest, EveryObjectSeesWhatTheOthersWrote) {
    ServiceDao other(folder_);
    dao_.addMeasureForm(measurement(1));
    EXPECT_EQ(namesOf(other.findMeasureForm(false)), Names{"S_1"});
    other.updateMeasureForm("House", 1, 1);
    EXPECT_TRUE(dao_.findMeasureForm(false).empty());
    dao_.DeleteMeasureFormData(1);
    EXPECT_TRUE(other.findMeasureForm(true).empty());
}

TEST_F(ServiceDaoTest, AMovedObjectGoesOn) {
    ServiceDao moved = std::move(dao_);
    moved.addMeasureForm(measurement(1));
    EXPECT_EQ(namesOf(moved.findMeasureForm(true)), Names{"S_1"});
}

TEST_F(ServiceDaoTest, NothingStaysOpenOrAllocatedBehindIt) {
    dao_ = ServiceDao(folder_);
    const std::size_t descriptors = testing::openDescriptors();
    const sqlite3_int64 memory = sqlite3_memory_used();
    ASSERT_GT(memory, 0);
    for (int i = 0; i < 3; ++i) {
        ServiceDao other(folder_);
        other.addMeasureForm(measurement(1));
        other.addRecordForm(testRecord());
        other.findMeasureForm(true);
        other.findRecordFormCount();
        other.hasTables();
        other.createDatadase();
        other.updateMeasureForm("House", 1, 1);
        other.findMeasureofId(1);
        other.DeleteMeasureFormData(1);
        testing::expectWarning(kStatementFailed);
        other.execSql("no sql");
        other.findRecordofId(1);
    }
    EXPECT_EQ(testing::openDescriptors(), descriptors);
    EXPECT_EQ(sqlite3_memory_used(), memory);
}

TEST_F(ServiceDaoTest, OpeningAgainGoesOn) {
    dao_.createDatadase();
    dao_.addMeasureForm(measurement(1));
    EXPECT_EQ(namesOf(dao_.findMeasureForm(true)), Names{"S_1"});
}

TEST_F(ServiceDaoTest, TheMeasurementsOfARecordAreFoundThroughTheIndex) {
    EXPECT_EQ(Connection(path_).rows("EXPLAIN QUERY PLAN SELECT *FROM measurefrom WHERE recordId = '3'"),
              (std::vector<Names>{
                  {"3", "0", "0", "SEARCH measurefrom USING INDEX measurefrom_recordId (recordId=?)"}}));
}

TEST_F(ServiceDaoTest, TablesWithoutTheIndexWorkAsWell) {
    dao_.execSql("DROP INDEX measurefrom_recordId");
    dao_.addMeasureForm(measurement(1));
    dao_.updateMeasureForm("House", 3, 1);
    EXPECT_EQ(namesOf(dao_.findMeasureofId(3)), Names{"S_1"});
    dao_.DeleteMeasureFormData(1);
    EXPECT_TRUE(dao_.findMeasureofId(3).empty());
}

TEST_F(ServiceDaoTest, AFolderThatIsNamedFromHereStaysTheSameFromElsewhere) {
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(temporary_.path()));
    ServiceDao dao{platform::DocumentsFolder(QStringLiteral("."))};
    ASSERT_TRUE(QDir::setCurrent(before));
    dao.createDatadase();
    dao.addMeasureForm(measurement(1));
    EXPECT_EQ(namesOf(dao_.findMeasureForm(true)), Names{"S_1"});
}

TEST_F(StorageFixture, AFolderOfAnyNameWorks) {
    for (const char* name : {"file:x?mode=ro", "Müller's Dokumente", "a b%20c", "测试 🔌", ":memory:"}) {
        const platform::DocumentsFolder folder(temporary_.path() + QLatin1Char('/') +
                                               QString::fromUtf8(name));
        ASSERT_TRUE(folder.ensure());
        ServiceDao dao(folder);
        dao.createTable();
        dao.addMeasureForm(measurement(1));
        EXPECT_EQ(Connection(folder.filePath(QStringLiteral("kestrix.sqlite")).toStdString())
                      .value("SELECT count(*) FROM measurefrom"),
                  "1")
            << name;
    }
}

}  // namespace
}  // namespace kestrix::storage
