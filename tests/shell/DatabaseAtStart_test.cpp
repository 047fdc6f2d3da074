// What the application finds in the place of its database when it starts.
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <ostream>

#include "storage/Selection.h"
#include "tests/shell/Scenarios.h"
#include "tests/storage/Connection.h"
#include "tests/support/FailingVfs.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

using testing::FailingVfs;

constexpr const char* kNotOpened = "数据库创建失败";
constexpr const char* kNotDone = "数据操作失败";

class DatabaseAtStart : public testing::WindowFixture {
  protected:
    DatabaseAtStart() { QDir().mkpath(options_.documents); }

    QByteArray content() const {
        QFile file(QString::fromStdString(databasePath()));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    std::string inDatabase(const std::string& sql) const {
        return storage::Connection(databasePath()).value(sql);
    }
    void press() {
        if (!reading_) {
            tester().appear();
            tester().play(kEarth);
            reading_ = true;
        }
        screen().pressRecord();
    }
    const storage::Outcome& outcome() { return screen().dao->lastOutcome(); }

  private:
    bool reading_ = false;
};

// Nobody sleeps in these: what would be waited for a lock is counted, in microseconds.
class LockedAtStart : public DatabaseAtStart {
  protected:
    FailingVfs vfs_;
    std::int64_t waited_ = 0;

    LockedAtStart() {
        vfs_.observe([this](const FailingVfs::Event& event) { waited_ += event.duration; });
    }
    ~LockedAtStart() override { stop(); }  // before the file system that its connections use

    // By the live screen and by the list of test records.
    static void expectNotOpened() {
        for (int screens = 0; screens < 2; ++screens) testing::expectWarning(kNotOpened);
    }
    // While `other` holds the database, in which it has made this change.
    void startLocked(storage::Connection& other, const char* change) {
        other.run(change);
        other.run("BEGIN EXCLUSIVE");
        expectNotOpened();
        start();
    }
    void expectStoredOnceFree(storage::Connection& other) {
        other.run("ROLLBACK");
        press();
        EXPECT_TRUE(outcome().done) << outcome().reason;
    }
};

TEST_F(LockedAtStart, TheDisplayIsLiveWithinASecondAndRowsAreStoredOnceItIsFree) {
    start();
    stop();
    storage::Connection other(databasePath());
    other.run("BEGIN EXCLUSIVE");
    waited_ = 0;
    expectNotOpened();
    start();
    EXPECT_LE(waited_, 1'000'000);
    EXPECT_TRUE(screen().isViewLoaded());
    EXPECT_EQ(app().storageProblem(), "another program holds the database (database is locked)");
    EXPECT_EQ(
        app().notice().text(),
        QStringLiteral("Nothing can be recorded: another program holds the database (database is locked)"));
    waited_ = 0;
    testing::expectWarning(kNotOpened);
    testing::expectWarning(kNotDone);
    press();
    EXPECT_EQ(waited_, 5'000'000) << "once";
    EXPECT_EQ(outcome().reason, "another program holds the database (database is locked)");
    other.run("ROLLBACK");
    press();
    EXPECT_TRUE(outcome().done) << outcome().reason;
    EXPECT_EQ(inDatabase("SELECT count(*) FROM measurefrom"), "1");
    EXPECT_EQ(app().storageProblem(), "");
}

// There is a file already, and neither tables nor settings.
TEST_F(LockedAtStart, ALockLaterOnMakesNothingOfThisSessionEarlier) {
    start();
    press();
    storage::Connection other(databasePath());
    other.run("BEGIN EXCLUSIVE");
    testing::expectWarning(kNotDone);
    press();
    testing::expectWarning(kNotOpened);
    testing::expectWarning(kNotDone);
    press();
    expectStoredOnceFree(other);
    EXPECT_EQ(storage::lastDataIdOfEarlierSessions, 0);
    EXPECT_EQ(app().unsavedAtStart(), 0U);
}

TEST_F(LockedAtStart, TheTablesOfAFirstLaunchAreMadeOnceItIsFree) {
    storage::Connection other(databasePath());
    startLocked(other, "PRAGMA user_version = 1");
    EXPECT_LE(waited_, 1'000'000);
    expectStoredOnceFree(other);
    EXPECT_EQ(inDatabase("SELECT count(*) FROM measurefrom"), "1");
}

TEST_F(LockedAtStart, OneWithoutAMarkGetsItOnceItIsFree) {
    options_.simulated = true;
    start();
    stop();
    storage::Connection other(databasePath());
    startLocked(other, "PRAGMA application_id = 0");
    expectStoredOnceFree(other);
    EXPECT_EQ(inDatabase("PRAGMA application_id"), "1264078165");
}

// It can be read, so it is known whose it is, but nothing can be written into it.
TEST_F(LockedAtStart, OneThatIsBeingWrittenIsHardlyWaitedForEither) {
    storage::Connection other(databasePath());
    other.run("PRAGMA user_version = 1");
    other.run("BEGIN IMMEDIATE");
    for (int failed = 0; failed < 2; ++failed) testing::expectWarning(kNotDone);  // one for each table
    start();
    EXPECT_GT(waited_, 0);
    EXPECT_LE(waited_, 1'000'000);
    EXPECT_TRUE(screen().isViewLoaded());
    other.run("ROLLBACK");
}

TEST_F(LockedAtStart, ReadingsOfTheOtherKindAreKeptOutOnceItIsFree) {
    start();
    stop();
    storage::Connection other(databasePath());
    const QString note = QDir(options_.documents).filePath(QStringLiteral("kestrix.ini"));
    ASSERT_FALSE(QFile::exists(note));
    options_.uris = {"simulator:earth"};
    startLocked(other, "PRAGMA application_id = 1264078149");  // measured
    other.run("ROLLBACK");
    const QByteArray before = content();
    testing::expectWarning(kNotOpened);
    testing::expectWarning(kNotDone);
    press();
    EXPECT_NE(outcome().reason.find("holds what was measured"), std::string::npos) << outcome().reason;
    EXPECT_EQ(content(), before);
    EXPECT_FALSE(QFile::exists(note)) << "a kind is noted that nobody could ask for";
}

TEST_F(LockedAtStart, AnotherProgramsIsKeptOutOnceItIsFree) {
    storage::Connection other(databasePath());
    startLocked(other, "CREATE TABLE letters (text)");
    other.run("ROLLBACK");
    const QByteArray before = content();
    testing::expectWarning(kNotOpened);
    testing::expectWarning(kNotDone);
    press();
    EXPECT_NE(outcome().reason.find("is not one of Kestrix's"), std::string::npos) << outcome().reason;
    EXPECT_EQ(content(), before);
}

struct Foreign {
    const char* name;
    const char* statements;
};

void PrintTo(const Foreign& foreign, std::ostream* out) {
    *out << foreign.name;
}

class ForeignDatabase : public DatabaseAtStart, public ::testing::WithParamInterface<Foreign> {};

TEST_P(ForeignDatabase, IsRefusedInOneLineAndStaysByteForByte) {
    namespace fs = std::filesystem;
    storage::Connection(databasePath()).run(GetParam().statements);
    const fs::perms rights = fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read;
    fs::permissions(databasePath(), rights);
    const QByteArray before = content();
    for (const std::vector<std::string>& uris : {std::vector<std::string>{}, {"simulator:earth"}}) {
        options_.uris = uris;
        AppDelegate application(options_);
        EXPECT_FALSE(application.applicationDidFinishLaunchingWithOptions());
        EXPECT_EQ(application.problem(),
                  "database " + databasePath() + " is not one of Kestrix's; it is left as it is");
        EXPECT_EQ(application.exitStatus(), 1);
        EXPECT_EQ(content(), before);
        EXPECT_EQ(fs::status(databasePath()).permissions(), rights);
        EXPECT_EQ(QDir(options_.documents).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                  QStringList{QStringLiteral("kestrix.sqlite")});
    }
}

INSTANTIATE_TEST_SUITE_P(
    With, ForeignDatabase,
    ::testing::Values(
        Foreign{"AnotherNumber", "PRAGMA application_id = 7"},
        Foreign{"AnotherNumberAndOurTables", "PRAGMA application_id = 7; CREATE TABLE measurefrom (dataId)"},
        Foreign{"TablesOfItsOwn", "CREATE TABLE letters (text); INSERT INTO letters VALUES ('mine')"},
        Foreign{"AViewOnly", "CREATE VIEW letters AS SELECT 'mine'"}),
    [](const auto& each) { return each.param.name; });

// Who deleted its tables did not make it somebody else's.
TEST_F(DatabaseAtStart, OneOfOursWithoutTablesIsStillOurs) {
    start();
    stop();
    storage::Connection(databasePath()).run("DROP TABLE measurefrom; DROP TABLE recordfrom");
    start();
    EXPECT_NE(app().storageProblem().find("has no tables"), std::string::npos) << app().storageProblem();
}

}  // namespace
}  // namespace kestrix::shell
