// Where a window looks for testers at its start, and how the user changes it while it is open.
#include "shell/TesterChoice.h"

#include "platform/CaptureFile.h"
#include "tests/shell/Scenarios.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

constexpr const char* kSilent = "tcp://127.0.0.1:1";
constexpr const char* kOther = "tcp://127.0.0.1:2";

class ChosenTesterTest : public testing::WindowFixture {
  protected:
    // The test's own tester is a source, too.
    std::vector<std::string> lookedFor() {
        std::vector<std::string> uris;
        for (const auto& source : app().accessories().sources()) {
            if (source->uri() != "fake:") uris.push_back(source->uri());
        }
        return uris;
    }
    std::string kept() const {
        return platform::UserDefaults(options_.settings).stringForKey(QStringLiteral("tester")).toStdString();
    }
    void keep(const std::string& uri) const {
        platform::UserDefaults settings(options_.settings);
        keepTester(settings, uri);
    }
    using Uris = std::vector<std::string>;
};

TEST_F(ChosenTesterTest, NobodyChoseIsLookedForAtTheStandardPlace) {
    options_.standardUri = kSilent;
    start();
    EXPECT_EQ(lookedFor(), Uris{kSilent});
    EXPECT_EQ(kept(), "") << "nobody chose it";
}

TEST_F(ChosenTesterTest, IsKeptInTheFoldersSettings) {
    options_.standardUri = kSilent;
    start();
    EXPECT_EQ(app().chooseTester(kOther).problem, "");
    EXPECT_EQ(lookedFor(), Uris{kOther});
    EXPECT_EQ(kept(), kOther);
    stop();
    start();
    EXPECT_EQ(lookedFor(), Uris{kOther});
}

TEST_F(ChosenTesterTest, WhichCannotBeKeptIsLookedForAndTheUserIsTold) {
    const QString settings = folder_.filePath(QStringLiteral("settings"));
    options_.settings = settings + QStringLiteral("/kestrix.ini");
    options_.standardUri = kSilent;
    start();
    app().notice().clear();
    ASSERT_TRUE(QDir().rename(settings, settings + QStringLiteral(".gone")));
    testing::expectWarning("cannot be written; tester is not kept");
    EXPECT_EQ(app().chooseTester(kOther).problem, "");
    EXPECT_EQ(lookedFor(), Uris{kOther});
    EXPECT_EQ(app().notice().text(),
              QStringLiteral("The next start looks elsewhere: %1 cannot be written").arg(options_.settings));
}

TEST_F(ChosenTesterTest, GoesBehindTheCommandLine) {
    keep(kOther);
    options_.uris = {kSilent};
    start();
    EXPECT_EQ(lookedFor(), Uris{kSilent});
    EXPECT_EQ(kept(), kOther);
}

TEST_F(ChosenTesterTest, ThatCannotBeLookedForStopsNoStart) {
    options_.standardUri = kSilent;
    for (const char* uri : {"morse:key", "replay:/nowhere/at all.kxc"}) {
        keep(uri);
        start();
        EXPECT_EQ(lookedFor(), Uris{}) << uri;
        EXPECT_TRUE(
            app().notice().text().startsWith(QStringLiteral("The tester chosen last is not looked for: ")))
            << app().notice().text().toStdString();
        stop();
    }
}

TEST_F(ChosenTesterTest, InTheUsersOwnFolderIsNeverMadeUp) {
    platform::UserDefaults settings(options_.settings);
    keepTester(settings, "simulator:");
    EXPECT_EQ(testerAtStart({}, settings, false, kSilent).uris, Uris{kSilent});
    EXPECT_EQ(testerAtStart({}, settings, true, kSilent).uris, Uris{"simulator:"});
}

TEST_F(ChosenTesterTest, OfAFolderOfMadeUpReadingsIsNotTheStandardOne) {
    options_.uris = {"simulator:earth"};
    start();
    stop();
    options_.uris.clear();
    options_.standardUri = kSilent;
    start();
    EXPECT_EQ(lookedFor(), Uris{});
    EXPECT_FALSE(app().simulated());
}

TEST_F(ChosenTesterTest, TakesTheConnectionOfTheOneBefore) {
    options_.uris = {kSilent};
    open();
    showReading(kEarth);
    EXPECT_EQ(screen().bluestate, 1);
    EXPECT_EQ(app().chooseTester(kOther).problem, "");
    EXPECT_EQ(screen().bluestate, 0);
    EXPECT_EQ(app().accessories().sources().size(), 1U);
    EXPECT_TRUE(isShown("lblNoCon"));
}

TEST_F(ChosenTesterTest, LeavesTheSessionsRowsAlone) {
    options_.uris = {kSilent};
    open();
    showReading(kEarth);
    screen().pressRecord();
    app().chooseTester(kOther);
    EXPECT_EQ(screen().dataList()->count(), 1);
}

TEST_F(ChosenTesterTest, WithAWrongUriChangesNothing) {
    options_.uris = {kSilent};
    start();
    EXPECT_NE(app().chooseTester("morse:key").problem, "");
    EXPECT_EQ(lookedFor(), Uris{kSilent});
    EXPECT_EQ(kept(), "");
}

TEST_F(ChosenTesterTest, OfTheOtherKindGetsAWindowOfItsOwn) {
    Uris opened;
    options_.openWindow = [&](const std::string& uri, const LaunchOptions::WindowEnded&) {
        opened.push_back(uri);
        return std::string();
    };
    options_.uris = {kSilent};
    start();
    EXPECT_TRUE(app().chooseTester("simulator:").otherWindow);
    EXPECT_EQ(opened, Uris{"simulator:"});
    EXPECT_EQ(lookedFor(), Uris{kSilent}) << "no made-up reading comes among the measured";
    EXPECT_EQ(kept(), "");
    stop();
    QDir(options_.documents).removeRecursively();
    options_.uris = {"simulator:earth"};
    start();
    EXPECT_TRUE(app().chooseTester(kOther).otherWindow);
    EXPECT_EQ(opened, (Uris{"simulator:", kOther}));
    EXPECT_EQ(app().chooseTester("simulator:house").otherWindow, false);
    EXPECT_EQ(lookedFor(), Uris{"simulator:house"});
}

TEST_F(ChosenTesterTest, WhoseWindowDoesNotOpenIsSaid) {
    options_.openWindow = [](const std::string&, const LaunchOptions::WindowEnded&) {
        return std::string("no room");
    };
    options_.uris = {kSilent};
    start();
    EXPECT_EQ(app().chooseTester("simulator:").problem, "no room");
}

TEST_F(ChosenTesterTest, WhoseWindowEndsAtOnceIsSaid) {
    LaunchOptions::WindowEnded ended;
    options_.openWindow = [&ended](const std::string&, LaunchOptions::WindowEnded told) {
        ended = std::move(told);
        return std::string();
    };
    options_.uris = {kSilent};
    start();
    EXPECT_EQ(app().chooseTester("simulator:").problem, "");
    ended("its folder holds what was measured");
    EXPECT_EQ(app().notice().text(), QStringLiteral("its folder holds what was measured"));
}

TEST_F(ChosenTesterTest, IsTheSameFileWhereverTheNextStartIs) {
    const QString file = folder_.filePath(QStringLiteral("site.kxc"));
    ASSERT_TRUE(QFile::exists(file) || QFile(file).open(QIODevice::WriteOnly));
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder_.path()));
    options_.choice = "replay:site.kxc";
    start();
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_EQ(lookedFor(), Uris{"replay:" + file.toStdString()});
    EXPECT_EQ(kept(), "replay:" + file.toStdString());
}

}  // namespace
}  // namespace kestrix::shell
