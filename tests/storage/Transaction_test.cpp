#include <gtest/gtest.h>

#include <filesystem>

#include "storage/Transaction.h"
#include "tests/storage/StorageFixture.h"

namespace kestrix::storage {
namespace {

namespace fs = std::filesystem;
using Call = testing::FailingVfs::Call;

class TransactionTest : public QuickStorageFixture {
  protected:
    ServiceDao dao_ = daoWithTables();

    std::string measurements() const { return Connection(path_).value("SELECT count(*) FROM measurefrom"); }
};

TEST_F(TransactionTest, CountsWhenItIsCommittedAndNotBefore) {
    {
        Transaction transaction(dao_);
        dao_.addMeasureForm(measurement(1));
        dao_.addMeasureForm(measurement(2));
        EXPECT_EQ(measurements(), "0");
        EXPECT_TRUE(transaction.commit());
        EXPECT_EQ(measurements(), "2");
    }
    EXPECT_EQ(measurements(), "2");
}

TEST_F(TransactionTest, IsUndoneWhenNobodyCommitsIt) {
    {
        Transaction transaction(dao_);
        dao_.addMeasureForm(measurement(1));
    }
    EXPECT_EQ(measurements(), "0");
    dao_.addMeasureForm(measurement(2));
    EXPECT_EQ(measurements(), "1");
}

TEST_F(TransactionTest, AfterAFailureNothingMoreOfItHappensAndTheReasonStays) {
    expectWarnings(kStatementFailed, 2);
    Transaction transaction(dao_);
    dao_.addMeasureForm(measurement(1));
    dao_.updateMeasureForm("House", 1, 99);
    const Outcome first = dao_.lastOutcome();
    EXPECT_EQ(first.reason, "the measurement is no longer there");
    dao_.addMeasureForm(measurement(2));
    EXPECT_TRUE(dao_.findMeasureForm(true).empty());
    dao_.DeleteMeasureFormData(1);
    dao_.execSql("DELETE FROM recordfrom");
    EXPECT_EQ(dao_.lastOutcome(), first);
    EXPECT_FALSE(transaction.commit());
    EXPECT_EQ(dao_.lastOutcome(), first);
    EXPECT_EQ(measurements(), "0");
}

// The connection is opened anew by then, where each statement would count by itself.
TEST_F(TransactionTest, AFailureThatClosesTheConnectionLetsNothingThroughAfterwards) {
    expectWarnings(kStatementFailed, 2);
    {
        Transaction transaction(dao_);
        dao_.addMeasureForm(measurement(1));
        dao_.execSql("no sql");
        dao_.addMeasureForm(measurement(2));
        EXPECT_FALSE(transaction.commit());
    }
    EXPECT_EQ(measurements(), "0");
    dao_.addMeasureForm(measurement(3));
    EXPECT_EQ(measurements(), "1");
}

TEST_F(TransactionTest, AFileThatIsMovedAwayMeanwhileTakesNothing) {
    {
        Transaction transaction(dao_);
        dao_.addMeasureForm(measurement(1));
        fs::rename(path_, path_ + ".aside");
        expectWarnings(kStatementFailed, 1);
        dao_.addMeasureForm(measurement(2));
        EXPECT_EQ(dao_.lastOutcome().reason, "the database was moved away meanwhile");
        EXPECT_FALSE(transaction.commit());
    }
    fs::rename(path_ + ".aside", path_);
    EXPECT_EQ(measurements(), "0");
}

TEST_F(TransactionTest, OneThatCannotCommitIsUndone) {
    Transaction transaction(dao_);
    dao_.addMeasureForm(measurement(1));
    vfs_.fail(Call::Sync, ".sqlite", SQLITE_IOERR_FSYNC);
    expectWarnings(kStatementFailed, 1);
    EXPECT_FALSE(transaction.commit());
    vfs_.heal();
    EXPECT_EQ(dao_.lastOutcome().reason, "the disk reports an error (disk I/O error)");
    EXPECT_EQ(measurements(), "0");
}

TEST_F(TransactionTest, KeepsOthersFromWritingFromItsBeginning) {
    Transaction transaction(dao_);
    ServiceDao other(folder_);
    expectWarnings(kStatementFailed, 1);
    other.addMeasureForm(measurement(1));
    EXPECT_EQ(other.lastOutcome().reason, "another program holds the database (database is locked)");
}

TEST_F(TransactionTest, OneThatCannotBeginSaysWhyAndLetsNothingThrough) {
    Connection other(path_);
    other.run("BEGIN IMMEDIATE");
    expectWarnings(kStatementFailed, 2);
    {
        Transaction transaction(dao_);
        other.run("ROLLBACK");
        EXPECT_EQ(dao_.lastOutcome().reason, "another program holds the database (database is locked)");
        dao_.addMeasureForm(measurement(1));
        EXPECT_FALSE(transaction.commit());
    }
    EXPECT_EQ(measurements(), "0");
}

}  // namespace
}  // namespace kestrix::storage
