// What the surroundings can do to an open database. Each time: the lines in the log as promised, nothing lost
// that was stored, and everything works again once the cause is gone.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <array>
#include <filesystem>
#include <utility>

#include "storage/ServiceDao.h"
#include "tests/storage/StorageFixture.h"
#include "tests/support/FailingVfs.h"
#include "tests/support/ProcessState.h"

namespace kestrix::storage {
namespace {

namespace fs = std::filesystem;
using testing::FailingVfs;
using Call = FailingVfs::Call;

class Failures : public QuickStorageFixture {
  protected:
    // Every operation that writes through execSql; each must say its failure once.
    void expectWritesFail(ServiceDao& dao, int openings = 0) {
        expectWarnings(kOpeningFailed, 4 * openings);
        expectWarnings(kStatementFailed, 4);
        dao.addMeasureForm(measurement(9));
        dao.addRecordForm(testRecord());
        dao.updateMeasureForm("House", 1, 1);
        dao.execSql("DELETE FROM recordfrom");
    }

    // Queries and deletes, which say nothing of their own.
    void expectNothingFound(ServiceDao& dao, int openings = 0) {
        expectWarnings(kOpeningFailed, 9 * openings);
        EXPECT_TRUE(dao.findMeasureForm(true).empty());
        EXPECT_TRUE(dao.findMeasureForm(false).empty());
        EXPECT_TRUE(dao.findMeasureofId(0).empty());
        EXPECT_TRUE(dao.findMeasureofDataId(1).empty());
        EXPECT_TRUE(dao.findRecordForm().empty());
        EXPECT_TRUE(dao.findRecordofId(1).empty());
        EXPECT_EQ(dao.findRecordFormCount(), 0);
        dao.DeleteMeasureFormData(1);
        dao.DeleteRecordFormData(1);
    }

    // It holds what it held, and takes more.
    void expectWorks(ServiceDao& dao, std::size_t measures) {
        EXPECT_EQ(dao.findMeasureForm(true).size(), measures);
        dao.addMeasureForm(measurement(1));
        EXPECT_EQ(dao.findMeasureForm(true).size(), measures + 1);
        EXPECT_EQ(Connection(path_).value("PRAGMA integrity_check"), "ok");
    }
};

TEST_F(Failures, WithoutTablesEveryInsertIsLoggedAndEveryQueryIsEmpty) {
    ServiceDao dao(folder_);
    expectWritesFail(dao);
    expectNothingFound(dao);
    dao.createTable();
    expectWorks(dao, 0);
}

TEST_F(Failures, BadSqlIsLoggedAndClosesTheConnectionUntilTheNextOperation) {
    ServiceDao dao = daoWithTables();
    const std::size_t before = testing::openDescriptors();
    testing::expectWarning(kStatementFailed);
    dao.execSql("no sql");
    EXPECT_EQ(testing::openDescriptors(), before - 1);
    expectWorks(dao, 0);
    EXPECT_EQ(testing::openDescriptors(), before);
}

TEST_F(Failures, TheLinesAreWarningsOfTheStorageCategory) {
    const platform::DocumentsFolder missing(temporary_.filePath(QStringLiteral("missing")));
    expectWarnings(kOpeningFailed, 2);
    testing::expectWarning(kStatementFailed);
    ServiceDao dao(missing);
    dao.execSql("SELECT 1");
    EXPECT_EQ(testing::logLines(), (std::vector<std::string>{"warning kestrix.storage: 数据库创建失败",
                                                             "warning kestrix.storage: 数据库创建失败",
                                                             "warning kestrix.storage: 数据操作失败"}));
}

TEST_F(Failures, AFolderThatIsMissingIsNotMadeAndWorksOnceItIsThere) {
    const fs::path inner = fs::path(path_).parent_path() / "inner";
    const platform::DocumentsFolder folder(QString::fromStdString(inner.string()));
    testing::expectWarning(kOpeningFailed);
    ServiceDao dao(folder);
    expectWritesFail(dao, 1);
    expectNothingFound(dao, 1);
    EXPECT_FALSE(fs::exists(inner));
    path_ = inner / "kestrix.sqlite";
    fs::create_directory(inner);
    dao.createTable();
    expectWorks(dao, 0);
}

TEST_F(Failures, AFileThatIsDeletedUnderItLeavesAFileWithoutTables) {
    ServiceDao dao = daoWithTables();
    dao.addMeasureForm(measurement(1));
    fs::remove(path_);
    expectWritesFail(dao);
    expectNothingFound(dao);
    EXPECT_EQ(Connection(path_).value("SELECT count(*) FROM sqlite_master"), "0");
    dao.createTable();
    expectWorks(dao, 0);
}

TEST_F(Failures, AFileThatIsMovedAwaySwallowsNoWrites) {
    ServiceDao dao = daoWithTables();
    dao.addMeasureForm(measurement(1));
    fs::rename(path_, path_ + ".aside");
    EXPECT_TRUE(dao.findMeasureForm(true).empty()) << "it reads what is not in its place";
    EXPECT_NE(dao.lastOutcome().reason.find("has no tables"), std::string::npos) << dao.lastOutcome().reason;
    testing::expectWarning(kStatementFailed);
    dao.addMeasureForm(measurement(2));
    EXPECT_NE(dao.lastOutcome().reason.find("has no tables"), std::string::npos) << dao.lastOutcome().reason;
    EXPECT_EQ(Connection(path_ + ".aside").value("SELECT count(*) FROM measurefrom"), "1");
    fs::rename(path_ + ".aside", path_);
    expectWorks(dao, 1);
}

TEST_F(Failures, AFileThatIsPutInItsPlaceTakesTheWrites) {
    ServiceDao dao = daoWithTables();
    dao.addMeasureForm(measurement(1));
    fs::copy_file(path_, path_ + ".copy");
    fs::rename(path_ + ".copy", path_);
    expectWorks(dao, 1);
    EXPECT_EQ(Connection(path_).value("SELECT count(*) FROM measurefrom"), "2");
}

TEST_F(Failures, AFolderThatVanishesAndComesBack) {
    ServiceDao dao = daoWithTables();
    dao.addMeasureForm(measurement(1));
    const std::string folder = temporary_.path().toStdString();
    fs::rename(folder, folder + ".gone");
    expectWritesFail(dao, 1);
    expectNothingFound(dao, 1);
    fs::rename(folder + ".gone", folder);
    expectWorks(dao, 1);
}

struct Cause {
    const char* name;
    Call call;
    const char* ending;
    int code;
};

void PrintTo(const Cause& cause, std::ostream* out) {
    *out << cause.name;
}

class FailingDisk : public Failures, public ::testing::WithParamInterface<Cause> {};

// Whatever fails while a row is written: it is said, the row is not there, the ones before it are.
TEST_P(FailingDisk, LosesNothingThatWasStored) {
    ServiceDao dao = daoWithTables();
    dao.addMeasureForm(measurement(1));
    vfs_.fail(GetParam().call, GetParam().ending, GetParam().code);
    expectWritesFail(dao);
    dao.DeleteMeasureFormData(1);
    vfs_.heal();
    EXPECT_EQ(dao.findMeasureForm(false).size(), 1U);
    expectWorks(dao, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Of, FailingDisk,
    ::testing::Values(Cause{"FullDisk", Call::Write, "", SQLITE_FULL},
                      Cause{"FullDiskAtTheDatabase", Call::Write, ".sqlite", SQLITE_FULL},
                      Cause{"FullDiskAtTheJournal", Call::Write, "-journal", SQLITE_FULL},
                      Cause{"FailedWrite", Call::Write, ".sqlite", SQLITE_IOERR_WRITE},
                      Cause{"FailedSyncOfTheDatabase", Call::Sync, ".sqlite", SQLITE_IOERR_FSYNC},
                      Cause{"FailedSyncOfTheJournal", Call::Sync, "-journal", SQLITE_IOERR_FSYNC},
                      Cause{"JournalThatCannotBeMade", Call::Open, "-journal", SQLITE_CANTOPEN}),
    [](const auto& each) { return each.param.name; });

TEST_F(Failures, AFileThatCannotBeOpenedAnyMoreIsSaidAtEachOperation) {
    ServiceDao dao = daoWithTables();
    dao.addMeasureForm(measurement(1));
    vfs_.fail(Call::Open, ".sqlite", SQLITE_CANTOPEN);
    testing::expectWarning(kStatementFailed);
    dao.execSql("no sql");  // closes
    expectWritesFail(dao, 1);
    expectNothingFound(dao, 1);
    vfs_.heal();
    expectWorks(dao, 1);
}

TEST_F(Failures, AReadThatFailsGivesTheRowsReadSoFar) {
    ServiceDao writer = daoWithTables();
    MeasureData large = measurement(1);
    large.result = std::string(2000, 'r');
    for (int i = 0; i < 20; ++i) writer.addMeasureForm(large);
    ServiceDao dao(folder_);
    vfs_.fail(Call::Read, ".sqlite", SQLITE_IOERR_READ);
    expectNothingFound(dao);
    vfs_.heal();
    EXPECT_EQ(dao.findMeasureForm(true).size(), 20U);
}

// What of that name is no database, or another program's, keeps its rights; ours are its owner's alone.
TEST_F(Failures, OnlyWhatMayBeOursIsMadeItsOwnersAlone) {
    const fs::perms shared = fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read;
    const fs::perms own = fs::perms::owner_read | fs::perms::owner_write;
    const auto rightsAfterOpening = [&] {
        for (const std::string& path : {path_, path_ + "-journal"}) fs::permissions(path, shared);
        const ServiceDao dao(folder_);
        EXPECT_EQ(fs::status(path_).permissions(), fs::status(path_ + "-journal").permissions());
        return fs::status(path_).permissions();
    };
    const auto write = [](const std::string& path, const QByteArray& content) {
        QFile file(QString::fromStdString(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    write(path_ + "-journal", "");
    write(path_,
          "a letter that is longer than the header of a database, which has a hundred bytes before "
          "its first page begins");
    EXPECT_EQ(rightsAfterOpening(), shared) << "a text";
    write(path_, "short");
    EXPECT_EQ(rightsAfterOpening(), shared) << "a short text";
    write(path_, "");
    EXPECT_EQ(rightsAfterOpening(), own) << "an empty file";
    Connection(path_).run("PRAGMA application_id = 7");
    write(path_ + "-journal", "");
    EXPECT_EQ(rightsAfterOpening(), shared) << "another program's";
    Connection(path_).run("PRAGMA application_id = 1264078149");
    write(path_ + "-journal", "");
    EXPECT_EQ(rightsAfterOpening(), own) << "ours";
}

// Another connection in the middle of something; its statements, and what of ours can go on.
struct Lock {
    const char* name;
    const char* statements;
    bool readable;
};

void PrintTo(const Lock& lock, std::ostream* out) {
    *out << lock.name;
}

class Locked : public Failures, public ::testing::WithParamInterface<Lock> {
  protected:
    std::int64_t slept_ = 0;
    ServiceDao dao_ = daoWithTables();
    Connection other_{path_};

    void SetUp() override {
        vfs_.observe([this](const FailingVfs::Event& event) { slept_ += event.duration; });
        dao_.addMeasureForm(measurement(1));
        other_.run(GetParam().statements);
    }
    void TearDown() override { vfs_.observe({}); }
};

TEST_P(Locked, AnInsertWaitsFiveSecondsAndIsLogged) {
    testing::expectWarning(kStatementFailed);
    dao_.addMeasureForm(measurement(2));
    EXPECT_EQ(slept_, 5'000'000);
    other_.run("ROLLBACK");
    expectWorks(dao_, 1);
}

TEST_P(Locked, ANewConnectionWaitsOnce) {
    ServiceDao fresh(folder_);
    testing::expectWarning(kStatementFailed);
    fresh.addMeasureForm(measurement(2));
    EXPECT_EQ(slept_, 5'000'000);
    other_.run("ROLLBACK");
    expectWorks(fresh, 1);
}

TEST_P(Locked, AnInsertGoesOnWhenTheLockIsReleased) {
    bool released = false;
    vfs_.observe([this, &released](const FailingVfs::Event& event) {
        slept_ += event.duration;
        if (event.duration > 0 && slept_ > 1'000'000 && !std::exchange(released, true))
            other_.run("ROLLBACK");
    });
    dao_.addMeasureForm(measurement(2));
    EXPECT_TRUE(released);
    EXPECT_LT(slept_, 1'200'000);
    expectWorks(dao_, 2);
}

TEST_P(Locked, ADeleteWaitsAndFailsInSilence) {
    dao_.DeleteMeasureFormData(1);
    EXPECT_EQ(slept_, 5'000'000);
    other_.run("ROLLBACK");
    expectWorks(dao_, 1);
}

TEST_P(Locked, AQueryGivesTheRowsOrNone) {
    EXPECT_EQ(dao_.findMeasureForm(true).size(), GetParam().readable ? 1U : 0U);
    EXPECT_EQ(slept_, GetParam().readable ? 0 : 5'000'000);
    other_.run("ROLLBACK");
    expectWorks(dao_, 1);
}

INSTANTIATE_TEST_SUITE_P(By, Locked,
                         ::testing::Values(Lock{"AReader", "BEGIN; SELECT * FROM measurefrom", true},
                                           Lock{"AWriter", "BEGIN IMMEDIATE", true},
                                           Lock{"AnExclusiveWriter", "BEGIN EXCLUSIVE", false}),
                         [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace kestrix::storage
