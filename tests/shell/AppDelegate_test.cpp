#include "shell/AppDelegate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "storage/Selection.h"
#include "tests/shell/Scenarios.h"
#include "tests/storage/Connection.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

class AppDelegateTest : public testing::WindowFixture {
  protected:
    std::string inDatabase(const std::string& sql) { return storage::Connection(databasePath()).value(sql); }
    // Its capture holds nothing: nobody plays it here.
    std::string replay() {
        QFile file(captures_.filePath(QStringLiteral("empty.kxc")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return "replay:" + file.fileName().toStdString();
    }
    void expectRefused(int status, const std::string& part) {
        AppDelegate application(options_);
        EXPECT_FALSE(application.applicationDidFinishLaunchingWithOptions());
        EXPECT_NE(application.problem().find(part), std::string::npos) << application.problem();
        EXPECT_EQ(application.problem().find('\n'), std::string::npos);
        EXPECT_EQ(application.exitStatus(), status);
    }
    QTemporaryDir captures_;
    // The session of one run.
    void recordOnce() {
        start();
        tester().appear();
        tester().play(kEarth);
        screen().pressRecord();
    }
};

TEST_F(AppDelegateTest, TheFirstStartMakesFolderTablesAndSettings) {
    EXPECT_FALSE(QFile::exists(options_.documents));
    start();
    EXPECT_EQ(inDatabase("SELECT count(*) FROM measurefrom"), "0");
    EXPECT_EQ(inDatabase("SELECT count(*) FROM recordfrom"), "0");
    EXPECT_TRUE(QFile::exists(options_.settings));
    EXPECT_TRUE(screen().isViewLoaded());
}

TEST_F(AppDelegateTest, ALaterStartKeepsWhatWasStoredAndBeginsANewSession) {
    recordOnce();
    EXPECT_EQ(screen().dataList()->count(), 1);
    stop();
    recordOnce();
    EXPECT_EQ(screen().dataList()->count(), 1);
    EXPECT_EQ(inDatabase("SELECT group_concat(dataId || dataName) FROM measurefrom"), "1S_1,2S_1");
}

TEST_F(AppDelegateTest, TheTimeOfAMeasurementIsTheClocks) {
    recordOnce();
    EXPECT_EQ(inDatabase("SELECT dateTime FROM measurefrom"), screen().getTimeNow());
    EXPECT_EQ(screen().getTimeNow(), "2026-03-04 05:06:07");
}

TEST_F(AppDelegateTest, LooksForEveryTesterThatItIsTold) {
    options_.uris = {"simulator:earth", "simulator:earth?seed=2"};
    start();
    EXPECT_EQ(app().accessories().sources().size(), 3U);  // and the test's own
    scheduler_.advance(std::chrono::seconds(2));
    EXPECT_EQ(screen().bluestate, 1);
    EXPECT_EQ(screen().strfunction(), "EARTH");
}

TEST_F(AppDelegateTest, AWrongUriIsSaidInOneLineAndLeavesNothingBehind) {
    options_.uris = {"simulator:", "morse:key"};
    expectRefused(2, "morse:key");
    EXPECT_FALSE(QFile::exists(options_.documents));
    EXPECT_FALSE(QFile::exists(options_.settings));
}

TEST_F(AppDelegateTest, WhatAUriNamesAndIsMissingIsAFailure) {
    options_.uris = {"replay:" + folder_.filePath(QStringLiteral("missing.kxc")).toStdString()};
    expectRefused(1, "missing.kxc");
}

TEST_F(AppDelegateTest, AChosenFolderHoldsItsSettings) {
    options_.settings.clear();
    start();
    EXPECT_TRUE(QFile::exists(options_.documents + QStringLiteral("/kestrix.ini")));
}

TEST_F(AppDelegateTest, ASettingsFileOfAnotherProgramIsRefused) {
    QFile file(options_.settings);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[user]\n");
    file.close();
    expectRefused(1, options_.settings.toStdString() + " is not one of Kestrix's; it is left as it is");
    EXPECT_FALSE(QFile::exists(options_.documents));
}

// Another process may have written them since this one was started.
TEST_F(AppDelegateTest, SettingsAreReadOnceTheFolderIsClaimed) {
    AppDelegate application(options_);
    platform::UserDefaults other(options_.settings);
    other.setString(QStringLiteral("tablesIn"), QFileInfo(options_.documents).absoluteFilePath());
    other.setBool(QStringLiteral("firstOrvo"), true);
    ASSERT_TRUE(application.applicationDidFinishLaunchingWithOptions()) << application.problem();
    EXPECT_NE(application.storageProblem().find("has no tables"), std::string::npos)
        << "it was no first launch any more";
}

TEST_F(AppDelegateTest, AStartOnAFolderThatIsTakenLeavesEvenDamagedSettings) {
    const QByteArray damaged = "[Kestrix]\nno key\n";
    QFile file(options_.settings);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(damaged);
    file.close();
    {
        FolderClaim other;
        ASSERT_EQ(other.take(options_.documents, {}), FolderClaim::Answer::Ours);
        expectRefused(1, "is in use by");
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), damaged);
        file.close();
    }
    testing::expectWarning("is damaged; kept as");
    start();
}

// Where the standard folders are, while it lives.
class HomeIn {
  public:
    explicit HomeIn(const QString& path) {
        qputenv("HOME", path.toUtf8());
        qputenv("XDG_CONFIG_HOME", path.toUtf8() + "/config");
    }
    HomeIn(const HomeIn&) = delete;
    HomeIn& operator=(const HomeIn&) = delete;
    ~HomeIn() {
        qputenv("HOME", home_);
        if (config_.isEmpty()) {
            qunsetenv("XDG_CONFIG_HOME");
        } else {
            qputenv("XDG_CONFIG_HOME", config_);
        }
    }

  private:
    QByteArray home_ = qgetenv("HOME");
    QByteArray config_ = qgetenv("XDG_CONFIG_HOME");
};

TEST_F(AppDelegateTest, MadeUpReadingsHaveAFolderOfTheirOwn) {
    const HomeIn home(folder_.path());
    options_.documents.clear();
    options_.settings.clear();
    for (const std::string& uri : {std::string("simulator:earth"), replay()}) {
        options_.uris = {uri};
        recordOnce();
        EXPECT_TRUE(app().simulated()) << uri;
        EXPECT_EQ(app().documents().path(), platform::DocumentsFolder::simulatedPath()) << uri;
        EXPECT_TRUE(QFile::exists(app().documents().filePath(QStringLiteral("kestrix.ini")))) << uri;
        stop();
    }
    EXPECT_FALSE(QFile::exists(platform::DocumentsFolder::standardPath()));
    EXPECT_FALSE(QFile::exists(platform::UserDefaults::standardPath()));
}

TEST_F(AppDelegateTest, WhatATesterMeasuresIsInTheUsersFolder) {
    const HomeIn home(folder_.path());
    options_.documents.clear();
    options_.settings.clear();
    options_.uris = {"tcp://127.0.0.1:1"};
    recordOnce();
    EXPECT_FALSE(app().simulated());
    EXPECT_EQ(app().documents().path(), platform::DocumentsFolder::standardPath());
    EXPECT_TRUE(QFile::exists(platform::UserDefaults::standardPath()));
    EXPECT_FALSE(QFile::exists(platform::DocumentsFolder::simulatedPath()));
}

TEST_F(AppDelegateTest, MadeUpReadingsAndMeasuredOnesComeTogetherNowhere) {
    const HomeIn home(folder_.path());
    options_.uris = {"simulator:", "tcp://127.0.0.1:1"};
    expectRefused(2, "need a window each");
    options_.uris = {"simulator:"};
    options_.documents = platform::DocumentsFolder::standardPath();
    expectRefused(2, "made-up readings (simulator:, replay:) are not kept there");
    options_.uris = {"tcp://127.0.0.1:1"};
    options_.documents = platform::DocumentsFolder::simulatedPath();
    expectRefused(2, "what a tester measures is not kept there");
    EXPECT_TRUE(QDir(folder_.path()).isEmpty());
}

TEST_F(AppDelegateTest, TellsHowManyMeasurementsOfEarlierSessionsAreNotSaved) {
    recordOnce();
    EXPECT_EQ(app().unsavedAtStart(), 0U);
    EXPECT_EQ(storage::lastDataIdOfEarlierSessions, 0);
    EXPECT_FALSE(app().notice().isShown());
    stop();
    recordOnce();
    EXPECT_EQ(app().notice().text(), QStringLiteral("A measurement of an earlier session is not saved yet"));
    stop();
    start();
    EXPECT_EQ(app().unsavedAtStart(), 2U);
    EXPECT_EQ(storage::lastDataIdOfEarlierSessions, 2);
    EXPECT_EQ(app().storageProblem(), "");
    EXPECT_EQ(app().notice().text(), QStringLiteral("2 measurements of earlier sessions are not saved yet"));
}

TEST_F(AppDelegateTest, TellsThatTheDatabaseCannotBeRead) {
    start();
    stop();
    ASSERT_TRUE(QFile::remove(QString::fromStdString(databasePath())));
    start();
    EXPECT_NE(app().storageProblem().find("has no tables"), std::string::npos) << app().storageProblem();
    EXPECT_EQ(app().notice().text(),
              QStringLiteral("Nothing can be recorded: ") + QString::fromStdString(app().storageProblem()));
}

}  // namespace
}  // namespace kestrix::shell
