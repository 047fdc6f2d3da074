#include "storage/FirstLaunch.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <filesystem>

#include "tests/storage/StorageFixture.h"
#include "tests/support/FailingVfs.h"

namespace kestrix::storage {
namespace {

namespace fs = std::filesystem;
using testing::FailingVfs;

class FirstLaunch : public QuickStorageFixture {
  protected:
    // Read anew each time, as a start of the application does.
    platform::UserDefaults defaults() const {
        return platform::UserDefaults(temporary_.filePath(QStringLiteral("settings.ini")));
    }
    std::unique_ptr<ServiceDao> launch() const {
        platform::UserDefaults now = defaults();
        return createTablesOnFirstLaunch(now, folder_, ServiceDao::kPatience);
    }
    bool marked() const { return defaults().boolForKey(QStringLiteral("firstOrvo")); }
};

TEST_F(FirstLaunch, AfterTheFirstLaunchBothTablesExistAndTheDefaultIsSet) {
    const auto dataDB = launch();
    ASSERT_NE(dataDB, nullptr);
    EXPECT_TRUE(marked());
    EXPECT_EQ(Connection(path_).value("SELECT group_concat(name) FROM (SELECT name FROM sqlite_master WHERE "
                                      "type = 'table' AND name LIKE '%from' ORDER BY name)"),
              "measurefrom,recordfrom");
    dataDB->addMeasureForm(measurement(1));
    EXPECT_EQ(dataDB->findMeasureForm(false).size(), 1U);
}

TEST_F(FirstLaunch, ALaterLaunchMakesNothing) {
    launch();
    EXPECT_EQ(launch(), nullptr);
    EXPECT_TRUE(marked());
}

TEST_F(FirstLaunch, AFileDeletedLaterStaysWithoutTables) {
    launch();
    fs::remove(path_);
    EXPECT_EQ(launch(), nullptr);
    EXPECT_FALSE(fs::exists(path_));
    ServiceDao dao(folder_);
    testing::expectWarning(kStatementFailed);
    dao.addMeasureForm(measurement(1));
    EXPECT_TRUE(dao.findMeasureForm(true).empty());
    EXPECT_FALSE(dao.hasTables());
}

TEST_F(FirstLaunch, EachFolderGetsItsTablesThoughTheSettingsAreTheSame) {
    launch();
    const QString other = temporary_.filePath(QStringLiteral("other"));
    QDir().mkpath(other);
    platform::UserDefaults now = defaults();
    const auto dataDB =
        createTablesOnFirstLaunch(now, platform::DocumentsFolder(other), ServiceDao::kPatience);
    ASSERT_NE(dataDB, nullptr);
    EXPECT_TRUE(dataDB->hasTables());
    EXPECT_EQ(createTablesOnFirstLaunch(now, platform::DocumentsFolder(other), ServiceDao::kPatience),
              nullptr);
}

// They do not say which folder they speak of. Tables that are there stay.
TEST_F(FirstLaunch, SettingsOfBeforeCountForNoFolder) {
    launch()->addMeasureForm(measurement(1));
    QFile settings(temporary_.filePath(QStringLiteral("settings.ini")));
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write("[General]\nfirstOrvo=true\ntablesMissing=false\n");
    settings.close();
    const auto dataDB = launch();
    ASSERT_NE(dataDB, nullptr);
    EXPECT_EQ(dataDB->findMeasureForm(false).size(), 1U);
    EXPECT_EQ(launch(), nullptr);
}

TEST_F(FirstLaunch, DatabaseJournalAndSettingsAreTheirOwnersAlone) {
    launch()->addMeasureForm(measurement(1));
    const std::string settings = temporary_.filePath(QStringLiteral("settings.ini")).toStdString();
    const auto expectPrivate = [&] {
        for (const std::string& path : {path_, path_ + "-journal", settings})
            EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write) << path;
    };
    expectPrivate();
    // As an earlier release left them.
    for (const std::string& path : {path_, path_ + "-journal", settings})
        fs::permissions(path, fs::perms::group_read | fs::perms::others_read, fs::perm_options::add);
    launch();
    expectPrivate();
}

// Its tables were made before there were indexes.
TEST_F(FirstLaunch, ALaterLaunchGivesAFileOfBeforeItsIndexes) {
    launch();
    Connection(path_).run("DROP INDEX measurefrom_recordId; DROP INDEX measurefrom_unsaved");
    EXPECT_EQ(launch(), nullptr);
    EXPECT_EQ(Connection(path_).value("SELECT group_concat(name) FROM (SELECT name FROM sqlite_master WHERE "
                                      "type = 'index' ORDER BY name)"),
              "measurefrom_recordId,measurefrom_unsaved");
}

TEST_F(FirstLaunch, AFileOfBeforeThatCannotBeWrittenIsUsedAsItIs) {
    launch()->addMeasureForm(measurement(1));
    Connection(path_).run("DROP INDEX measurefrom_unsaved");
    vfs_.fail(FailingVfs::Call::Write, "", SQLITE_FULL);
    EXPECT_EQ(launch(), nullptr);
    EXPECT_EQ(ServiceDao(folder_).findMeasureForm(false).size(), 1U);
}

TEST_F(FirstLaunch, TheDefaultIsSetBeforeTheFileIsMade) {
    bool markedFirst = false;
    vfs_.observe([&](const FailingVfs::Event& event) {
        if (event.call == FailingVfs::Call::Open && event.path == path_) markedFirst = marked();
    });
    launch();
    EXPECT_TRUE(markedFirst);
}

TEST_F(FirstLaunch, TablesThatCouldNotBeMadeAreMadeByTheNextLaunch) {
    {
        vfs_.fail(FailingVfs::Call::Write, "", SQLITE_FULL);
        expectWarnings(kStatementFailed, 2);
        const auto dataDB = launch();
        ASSERT_NE(dataDB, nullptr);
        EXPECT_FALSE(dataDB->hasTables());
    }
    vfs_.heal();
    const auto dataDB = launch();
    ASSERT_NE(dataDB, nullptr);
    EXPECT_TRUE(dataDB->hasTables());
    EXPECT_EQ(launch(), nullptr);
}

TEST_F(FirstLaunch, AFileThatCouldNotBeOpenedIsMadeByTheNextLaunch) {
    {
        vfs_.fail(FailingVfs::Call::Open, "", SQLITE_CANTOPEN);
        expectWarnings(kOpeningFailed, 4);  // its making, two statements, the look at the tables
        expectWarnings(kStatementFailed, 2);
        launch();
    }
    vfs_.heal();
    const auto dataDB = launch();
    ASSERT_NE(dataDB, nullptr);
    EXPECT_TRUE(dataDB->hasTables());
    EXPECT_EQ(launch(), nullptr);
}

// The default is set, and nothing else has happened yet.
TEST_F(FirstLaunch, AFirstLaunchThatIsKilledBeforeTheTablesAreThereIsTakenUpByTheNext) {
    std::string settings;
    vfs_.observe([&](const FailingVfs::Event& event) {
        if (event.call == FailingVfs::Call::Open && settings.empty()) {
            settings = temporary_.filePath(QStringLiteral("killed.ini")).toStdString();
            fs::copy_file(temporary_.filePath(QStringLiteral("settings.ini")).toStdString(), settings);
        }
    });
    launch();
    vfs_.observe({});
    fs::remove(path_);
    platform::UserDefaults asKilled(QString::fromStdString(settings));
    EXPECT_TRUE(asKilled.boolForKey(QStringLiteral("firstOrvo")));
    const auto dataDB = createTablesOnFirstLaunch(asKilled, folder_, ServiceDao::kPatience);
    ASSERT_NE(dataDB, nullptr);
    EXPECT_TRUE(dataDB->hasTables());
}

}  // namespace
}  // namespace kestrix::storage
