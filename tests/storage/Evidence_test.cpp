// A measurement and its evidence: both or neither, and what is done with it later.
#include <gtest/gtest.h>

#include "storage/DatabaseLook.h"
#include "storage/TestRecords.h"
#include "storage/Transaction.h"
#include "tests/storage/EvidenceFixture.h"

namespace kestrix::storage {
namespace {

using EvidenceTest = EvidenceFixture;

TEST_F(EvidenceTest, StandsBesideItsMeasurement) {
    EXPECT_EQ(record(1), 1);
    EXPECT_EQ(record(2), 2);
    const std::vector<EvidenceRow> rows = chain();
    ASSERT_EQ(rows.size(), 2U);
    const EvidenceRow& second = rows[1];
    EXPECT_EQ(second.event, EvidenceEvent::Recorded);
    EXPECT_EQ(second.dataId, 2);
    EXPECT_EQ(second.evidence, evidence(2));
    EXPECT_EQ(second.moment, (Moment{1'772'600'767'002, 3600, 1'772'600'772'002}));
    EXPECT_EQ(second.measurement, digestOf(dao_.findMeasureofDataId(2).at(0)));
    EXPECT_EQ(second.identity.size(), 36U);
    EXPECT_NE(second.identity, rows[0].identity);
    EXPECT_EQ(second.program.rfind("kestrix ", 0), 0U) << second.program;
}

TEST_F(EvidenceTest, IsMadeInAFileOfBefore) {
    Connection(path_).run("DROP TABLE IF EXISTS evidence");
    dao_.addMeasureForm(measurement(1));  // as the version of before did
    EXPECT_EQ(record(2), 2);
    EXPECT_EQ(chain().size(), 1U);
    EXPECT_EQ(count("measurefrom"), "2");
}

TEST_F(EvidenceTest, ThatCannotBeStoredKeepsItsMeasurementAway) {
    record(1);
    Connection(path_).run("CREATE TRIGGER no BEFORE INSERT ON evidence BEGIN SELECT RAISE(FAIL, 'no'); END");
    testing::expectWarning(kStatementFailed);
    dao_.addMeasureWithEvidence(measurement(2), evidence(2));
    EXPECT_FALSE(dao_.lastOutcome().done);
    EXPECT_NE(dao_.lastOutcome().reason.find("(no)"), std::string::npos) << dao_.lastOutcome().reason;
    EXPECT_EQ(count("measurefrom"), "1");
    EXPECT_EQ(chain().size(), 1U);
    Connection(path_).run("DROP TRIGGER no");
    EXPECT_EQ(record(2), 2);
}

TEST_F(EvidenceTest, OfAMeasurementThatCannotBeStoredIsNone) {
    record(1);
    Connection(path_).run(
        "CREATE TRIGGER no BEFORE INSERT ON measurefrom BEGIN SELECT RAISE(FAIL, 'no'); END");
    testing::expectWarning(kStatementFailed);
    dao_.addMeasureWithEvidence(measurement(2), evidence(2));
    EXPECT_FALSE(dao_.lastOutcome().done);
    EXPECT_EQ(chain().size(), 1U);
}

TEST_F(EvidenceTest, TellsOfFilingDeletingAndPuttingBack) {
    record(1);
    record(2);
    const Outcome filed = fileMeasurements(dao_, testRecord(), dao_.findMeasureForm(false));
    ASSERT_TRUE(filed.done) << filed.reason;
    DeletedRecord deleted;
    ASSERT_TRUE(deleteRecord(dao_, filed.identity, deleted).done);
    EXPECT_EQ(count("measurefrom"), "0");
    EXPECT_EQ(chain().size(), 6U) << "it stays";
    ASSERT_TRUE(putBackRecord(dao_, deleted).done);
    const std::vector<EvidenceRow> rows = chain();
    const EvidenceEvent expected[] = {
        EvidenceEvent::Recorded, EvidenceEvent::Recorded, EvidenceEvent::Filed,   EvidenceEvent::Filed,
        EvidenceEvent::Deleted,  EvidenceEvent::Deleted,  EvidenceEvent::PutBack, EvidenceEvent::PutBack};
    ASSERT_EQ(rows.size(), std::size(expected));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].event, expected[i]) << i;
        EXPECT_EQ(rows[i].dataId, 1 + static_cast<std::int64_t>(i % 2)) << i;
    }
    EXPECT_EQ(rows[6].measurement, digestOf(dao_.findMeasureofDataId(1).at(0)));
    EXPECT_EQ(rows[6].measurement, rows[2].measurement) << "put back as it was";
    EXPECT_NE(rows[2].measurement, rows[0].measurement) << "filed is another row";
}

TEST_F(EvidenceTest, OfARecordThatGrowsComesWithEachMeasurement) {
    GrowingRecord growing(dao_, testRecord());
    ASSERT_TRUE(growing.begin("2026-03-04 05:06:07").done);
    ASSERT_TRUE(growing.add(measurement(1), evidence(1)).done);
    ASSERT_TRUE(growing.add(measurement(2), evidence(2)).done);
    const std::vector<EvidenceRow> rows = chain();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[1].measurement, digestOf(dao_.findMeasureofDataId(2).at(0)));
}

TEST_F(EvidenceTest, ASaveThatFailsLeavesNoTraceInTheChain) {
    record(1);
    record(2);
    std::vector<MeasureData> measurements = dao_.findMeasureForm(false);
    Connection(path_).run(
        "CREATE TRIGGER no BEFORE UPDATE ON measurefrom WHEN OLD.dataId = 2 BEGIN SELECT "
        "RAISE(FAIL, 'no'); END");
    testing::expectWarning(kStatementFailed);
    EXPECT_FALSE(fileMeasurements(dao_, testRecord(), measurements).done);
    EXPECT_EQ(chain().size(), 2U);
}

TEST_F(EvidenceTest, APlaceWhoseRowWasTakenAwayIsNotGivenAgain) {
    record(1);
    record(2);
    Connection(path_).run("DELETE FROM evidence WHERE place = 2");
    record(3);
    EXPECT_EQ(Connection(path_).value("SELECT group_concat(place) FROM evidence"), "1,3");
}

TEST_F(EvidenceTest, BehindTheLastPlaceThatThereIsCannotBeStoredAndIsSaid) {
    record(1);
    Connection(path_).run("UPDATE evidence SET place = 9223372036854775807");
    testing::expectWarning(kStatementFailed);
    dao_.addMeasureWithEvidence(measurement(2), evidence(2));
    EXPECT_FALSE(dao_.lastOutcome().done);
    EXPECT_NE(dao_.lastOutcome().reason.find("evidence.place"), std::string::npos)
        << dao_.lastOutcome().reason;
    EXPECT_EQ(count("measurefrom"), "1");
}

TEST_F(EvidenceTest, AFirstOneThatIsUndoneLeavesTheNextItsTable) {
    {
        Transaction undone(dao_);
        dao_.addMeasureWithEvidence(measurement(1), evidence(1));
        EXPECT_TRUE(dao_.lastOutcome().done);
    }
    EXPECT_EQ(Connection(path_).value("PRAGMA user_version"), "0");
    EXPECT_EQ(record(2), 1);
    EXPECT_EQ(chain().size(), 1U);
}

// All that the version of before asks and does.
TEST_F(EvidenceTest, LeavesAFileThatTheVersionOfBeforeOpens) {
    record(1);
    dao_ = ServiceDao(folder_);
    EXPECT_EQ(lookAtDatabase(folder_, ServiceDao::kPatience).owner, DatabaseLook::Owner::Ours);
    EXPECT_TRUE(dao_.hasTables());
    dao_.createTable();
    ASSERT_TRUE(dao_.lastOutcome().done);
    dao_.addMeasureForm(measurement(2));
    dao_.addRecordForm(testRecord());
    dao_.updateMeasureForm("House 7", 1, 2);
    ASSERT_TRUE(dao_.lastOutcome().done);
    EXPECT_EQ(dao_.findMeasureForm(true).size(), 2U);
    dao_.DeleteMeasureFormData(2);
    EXPECT_EQ(count("measurefrom"), "1");
    EXPECT_EQ(chain().size(), 1U);
}

TEST_F(EvidenceTest, IsOfTheMomentOfThePressHoweverLongTheLockIsWaitedFor) {
    record(1);
    const std::int64_t pressed = clock_ + 1;
    Connection other(path_);
    other.run("BEGIN IMMEDIATE");
    dao_.setPatience(std::chrono::milliseconds(0));
    testing::expectWarning(kStatementFailed);
    dao_.addMeasureWithEvidence(measurement(2), evidence(2));
    EXPECT_FALSE(dao_.lastOutcome().done);
    EXPECT_EQ(clock_, pressed) << "asked for before the lock";
}

TEST_F(EvidenceTest, OfADatabaseInUtf16IsTheSame) {
    QTemporaryDir folder;
    Connection(folder.filePath(QStringLiteral("kestrix.sqlite")).toStdString())
        .run("PRAGMA encoding = 'UTF-16'; CREATE TABLE t (t); DROP TABLE t");
    ServiceDao dao{platform::DocumentsFolder(folder.path())};
    dao.createTable();
    dao.addMeasureWithEvidence(measurement(1), evidence(1));
    ASSERT_TRUE(dao.lastOutcome().done);
    const std::optional<EvidenceRow> found = dao.findRecorded(1);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->hash, hashOf(*found));
    EXPECT_EQ(found->evidence.accessory, "Tester 7");
}

TEST_F(EvidenceTest, IsDueFromTheFirstMeasurementOn) {
    record(1);
    record(2);
    EXPECT_EQ(Connection(path_).value("PRAGMA user_version"), "1");
}

TEST_F(EvidenceTest, IsDueBehindTheMeasurementsOfBefore) {
    dao_.addMeasureForm(measurement(1));
    dao_.addMeasureForm(measurement(2));
    record(3);
    EXPECT_EQ(Connection(path_).value("PRAGMA user_version"), "3");
}

TEST_F(EvidenceTest, IsDueBehindThemAlsoWhereFilingOneComesFirst) {
    dao_.addMeasureForm(measurement(1));
    dao_.addMeasureForm(measurement(2));
    ASSERT_TRUE(fileMeasurements(dao_, testRecord(), {dao_.findMeasureofDataId(1)}).done);
    EXPECT_EQ(Connection(path_).value("PRAGMA user_version"), "3");
}

TEST_F(EvidenceTest, IsDueFromTheSameOneOnWhenItsTableIsTakenAway) {
    record(1);
    record(2);
    Connection(path_).run("DROP TABLE evidence");
    dao_ = daoWithTables();
    record(3);
    EXPECT_EQ(Connection(path_).value("PRAGMA user_version"), "1");
}

TEST_F(EvidenceTest, IsDueFromTheFirstRecordedOneWhereTheDatabaseDidNotRememberIt) {
    dao_.addMeasureForm(measurement(1));
    record(2);
    record(3);
    Connection(path_).run("PRAGMA user_version = 0");
    dao_ = daoWithTables();
    record(4);
    EXPECT_EQ(Connection(path_).value("PRAGMA user_version"), "2");
}

}  // namespace
}  // namespace kestrix::storage
