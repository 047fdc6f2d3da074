// What an operation says when it is asked: done, with the identity of what it inserted, or the reason why
// not.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "storage/ServiceDao.h"
#include "tests/storage/StorageFixture.h"

namespace kestrix::storage {
namespace {

namespace fs = std::filesystem;
using Call = testing::FailingVfs::Call;

class ServiceDaoOutcome : public QuickStorageFixture {
  protected:
    std::string folderPath_ = folder_.path().toStdString();

    void expectReason(const ServiceDao& dao, const std::string& reason) {
        EXPECT_FALSE(dao.lastOutcome().done);
        EXPECT_EQ(dao.lastOutcome().reason, reason);
        EXPECT_EQ(dao.lastOutcome().identity, 0);
    }
    // The reason why one more measurement is not stored.
    void expectInsertFails(ServiceDao& dao, const std::string& reason, int openings = 0) {
        expectWarnings(kOpeningFailed, openings);
        expectWarnings(kStatementFailed, 1);
        dao.addMeasureForm(measurement(9));
        expectReason(dao, reason);
    }
};

TEST_F(ServiceDaoOutcome, OpeningAndMakingTheTablesAreDone) {
    ServiceDao dao(folder_);
    EXPECT_EQ(dao.lastOutcome(), Outcome{});
    dao.createTable();
    EXPECT_EQ(dao.lastOutcome(), Outcome{});
}

TEST_F(ServiceDaoOutcome, AnInsertTellsTheIdentityOfItsRow) {
    ServiceDao dao = daoWithTables();
    for (const std::int64_t identity : {1, 2, 3}) {
        dao.addMeasureForm(measurement(1));
        EXPECT_EQ(dao.lastOutcome(), (Outcome{true, "", identity}));
    }
    dao.addRecordForm(testRecord());
    EXPECT_EQ(dao.lastOutcome(), (Outcome{true, "", 1}));
    EXPECT_EQ(dao.findRecordForm().back().recordId, 1);
}

TEST_F(ServiceDaoOutcome, WhatInsertsNothingTellsNoIdentity) {
    ServiceDao dao = daoWithTables();
    const auto expectDone = [&dao](const char* operation) {
        EXPECT_EQ(dao.lastOutcome(), Outcome{}) << operation;
        dao.addMeasureForm(measurement(1));
    };
    dao.addMeasureForm(measurement(1));
    dao.findMeasureForm(true);
    expectDone("findMeasureForm");
    dao.findRecordFormCount();
    expectDone("findRecordFormCount");
    dao.updateMeasureForm("House", 1, 1);
    expectDone("updateMeasureForm");
    dao.DeleteMeasureFormData(1);
    expectDone("DeleteMeasureFormData");
    dao.execSql("DELETE FROM recordfrom");
    expectDone("execSql");
    EXPECT_TRUE(dao.hasTables());
    expectDone("hasTables");
}

// The insert that fails is known as such, even where an older record could be taken for it.
TEST_F(ServiceDaoOutcome, AFailedInsertHasNoIdentityWhateverWasInsertedBefore) {
    ServiceDao dao = daoWithTables();
    dao.addRecordForm(testRecord());
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    expectWarnings(kStatementFailed, 1);
    dao.addRecordForm(testRecord());
    expectReason(dao, "the disk is full (database or disk is full)");
    vfs_.heal();
    dao.addRecordForm(testRecord());
    EXPECT_EQ(dao.lastOutcome(), (Outcome{true, "", 2}));
}

TEST_F(ServiceDaoOutcome, AFolderThatIsMissingIsNamed) {
    const fs::path gone = folderPath_ + ".gone";
    ServiceDao dao = daoWithTables();
    fs::rename(folderPath_, gone);
    expectInsertFails(dao, "there is no folder " + folderPath_ + " (unable to open database file)", 1);
    expectWarnings(kOpeningFailed, 1);
    EXPECT_TRUE(dao.findMeasureForm(true).empty());
    expectReason(dao, "there is no folder " + folderPath_ + " (unable to open database file)");
    fs::rename(gone, folderPath_);
    dao.addMeasureForm(measurement(1));
    EXPECT_EQ(dao.lastOutcome(), (Outcome{true, "", 1}));
}

TEST_F(ServiceDaoOutcome, ADatabaseWithoutTablesIsSaidByEveryOperation) {
    const std::string reason = "the database in " + folderPath_ + " has no tables (no such table: ";
    ServiceDao dao(folder_);
    expectInsertFails(dao, reason + "measurefrom)");
    EXPECT_FALSE(dao.hasTables());
    expectReason(dao, reason + "measurefrom)");
    dao.findRecordForm();
    expectReason(dao, reason + "recordfrom)");
    dao.DeleteRecordFormData(1);
    expectReason(dao, reason + "recordfrom)");
}

TEST_F(ServiceDaoOutcome, AFullDiskWhereverItShowsIsSaid) {
    for (const char* file : {".sqlite", "-journal"}) {
        ServiceDao dao = daoWithTables();
        vfs_.fail(Call::Write, file, SQLITE_FULL);
        expectInsertFails(dao, "the disk is full (database or disk is full)");
        vfs_.heal();
    }
}

TEST_F(ServiceDaoOutcome, ALockOfAnotherProgramIsSaid) {
    ServiceDao dao = daoWithTables();
    Connection other(path_);
    other.run("BEGIN EXCLUSIVE");
    const std::string reason = "another program holds the database (database is locked)";
    expectInsertFails(dao, reason);
    EXPECT_TRUE(dao.findMeasureForm(false).empty());
    expectReason(dao, reason);
    dao.DeleteMeasureFormData(1);
    expectReason(dao, reason);
    other.run("ROLLBACK");
    dao.addMeasureForm(measurement(1));
    EXPECT_TRUE(dao.lastOutcome().done);
}

TEST_F(ServiceDaoOutcome, AReadOnlyDatabaseIsSaid) {
    ServiceDao dao = daoWithTables();
    vfs_.fail(Call::Open, "-journal", SQLITE_READONLY);
    expectInsertFails(dao, "the folder " + folderPath_ +
                               " or the database in it is read-only (attempt to write a readonly database)");
}

TEST_F(ServiceDaoOutcome, AFailingDiskIsSaid) {
    ServiceDao dao = daoWithTables();
    vfs_.fail(Call::Sync, ".sqlite", SQLITE_IOERR_FSYNC);
    expectInsertFails(dao, "the disk reports an error (disk I/O error)");
}

TEST_F(ServiceDaoOutcome, AFileThatIsNoDatabaseIsSaidToBeDamaged) {
    std::ofstream(path_) << std::string(5000, '?');
    ServiceDao dao(folder_);
    expectInsertFails(dao, "the database in " + folderPath_ + " is damaged (file is not a database)");
}

TEST_F(ServiceDaoOutcome, TablesThatCannotBeMadeAreSaid) {
    ServiceDao dao(folder_);
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    expectWarnings(kStatementFailed, 2);
    dao.createTable();
    expectReason(dao, "the disk is full (database or disk is full)");
}

TEST_F(ServiceDaoOutcome, AReadThatFailsIsSaidThoughItGivesRows) {
    ServiceDao writer = daoWithTables();
    MeasureData large = measurement(1);
    large.result = std::string(2000, 'r');
    for (int i = 0; i < 20; ++i) writer.addMeasureForm(large);
    ServiceDao dao(folder_);
    vfs_.fail(Call::Read, ".sqlite", SQLITE_IOERR_READ);
    dao.findMeasureForm(true);
    expectReason(dao, "the disk reports an error (disk I/O error)");
    vfs_.heal();
}

TEST_F(ServiceDaoOutcome, AMeasurementThatIsGoneIsNotFiled) {
    ServiceDao dao = daoWithTables();
    dao.addMeasureForm(measurement(1));
    dao.updateMeasureForm("House", 1, 7);
    expectReason(dao, "the measurement is no longer there");
    dao.updateMeasureForm("House", 1, 1);
    EXPECT_TRUE(dao.lastOutcome().done);
}

}  // namespace
}  // namespace kestrix::storage
