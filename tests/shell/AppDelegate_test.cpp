#include "shell/AppDelegate.h"

#include <QFile>

#include "tests/shell/Scenarios.h"
#include "tests/storage/Connection.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

class AppDelegateTest : public testing::WindowFixture {
  protected:
    std::string inDatabase(const std::string& sql) { return storage::Connection(databasePath()).value(sql); }
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
    EXPECT_EQ(screen().getTimeNow().substr(0, 5), "2026-");
}

TEST_F(AppDelegateTest, LooksForEveryTesterThatItIsTold) {
    options_.uris = {"tcp://127.0.0.1:1", "simulator:earth"};
    start();
    EXPECT_EQ(app().accessories().sources().size(), 3U);  // and the test's own
    scheduler_.advance(std::chrono::seconds(2));
    EXPECT_EQ(screen().bluestate, 1);
    EXPECT_EQ(screen().strfunction, "EARTH");
}

TEST_F(AppDelegateTest, AWrongUriIsSaidInOneLineAndLeavesNothingBehind) {
    options_.uris = {"simulator:", "morse:key"};
    AppDelegate application(options_);
    EXPECT_FALSE(application.applicationDidFinishLaunchingWithOptions());
    EXPECT_NE(application.problem().find("morse:key"), std::string::npos) << application.problem();
    EXPECT_EQ(application.problem().find('\n'), std::string::npos);
    EXPECT_FALSE(QFile::exists(options_.documents));
    EXPECT_FALSE(QFile::exists(options_.settings));
}

}  // namespace
}  // namespace kestrix::shell
