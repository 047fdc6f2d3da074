#include "platform/PathWatcher.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/support/EventLoop.h"

namespace kestrix::platform {
namespace {

class PathWatcherTest : public ::testing::Test {
  protected:
    QString at(const char* name) const { return folder_.filePath(QLatin1String(name)); }
    static void make(const QString& path) { ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly)); }
    bool told() {
        const int before = told_;
        return testing::spinUntil([&] { return changes_ > before; }) && (told_ = changes_) > before;
    }

    QTemporaryDir folder_;
    int changes_ = 0;
    int told_ = 0;
};

TEST_F(PathWatcherTest, TellsOfComingRightsAndGoing) {
    PathWatcher watcher(at("port"), [this] { ++changes_; });
    make(at("port"));
    EXPECT_TRUE(told());
    ASSERT_TRUE(QFile::setPermissions(at("port"), QFile::ReadOwner));
    EXPECT_TRUE(told());
    ASSERT_TRUE(QFile::remove(at("port")));
    EXPECT_TRUE(told());
}

TEST_F(PathWatcherTest, TellsOfTheRightsOfWhatALinkLeadsTo) {
    QDir(folder_.path()).mkdir(QStringLiteral("dev"));
    QDir(folder_.path()).mkdir(QStringLiteral("by-id"));
    make(at("dev/port"));
    ASSERT_TRUE(QFile::link(at("dev/port"), at("by-id/tester")));
    PathWatcher watcher(at("by-id/tester"), [this] { ++changes_; });
    ASSERT_TRUE(QFile::setPermissions(at("dev/port"), QFile::ReadOwner));
    EXPECT_TRUE(told());
}

TEST_F(PathWatcherTest, AFolderThatVanishesWithItsPortIsWatchedAgainWhenItReturns) {
    PathWatcher watcher(at("serial/by-id/tester"), [this] { ++changes_; });
    for (int round = 0; round < 3; ++round) {
        QDir(folder_.path()).mkpath(QStringLiteral("serial/by-id"));
        make(at("serial/by-id/tester"));
        EXPECT_TRUE(told()) << "it has come";
        ASSERT_TRUE(QDir(at("serial")).removeRecursively());
        EXPECT_TRUE(told()) << "it has gone";
    }
}

// Each folder is seen only by who watches the one above it, which itself has only just come.
TEST_F(PathWatcherTest, FoldersThatComeOneAfterTheOtherAreWatchedAsTheyCome) {
    PathWatcher watcher(at("serial/by-id/tester"), [this] { ++changes_; });
    for (int round = 0; round < 2; ++round) {
        for (const char* folder : {"serial", "serial/by-id"}) {
            ASSERT_TRUE(QDir().mkdir(at(folder)));
            ASSERT_TRUE(testing::spinUntil([&] { return watcher.isWatching(at(folder)); })) << folder;
        }
        make(at("serial/by-id/tester"));
        EXPECT_TRUE(told()) << "it has come";
        ASSERT_TRUE(QDir(at("serial")).removeRecursively());
        EXPECT_TRUE(told()) << "it has gone";
    }
}

TEST_F(PathWatcherTest, OtherFilesOfTheFolderAreNoChange) {
    make(at("port"));
    PathWatcher watcher(at("port"), [this] { ++changes_; });
    make(at("other"));
    ASSERT_TRUE(QFile::remove(at("other")));
    ASSERT_TRUE(QFile::setPermissions(at("port"), QFile::ReadOwner));
    EXPECT_TRUE(told());
    EXPECT_EQ(changes_, 1);
}

}  // namespace
}  // namespace kestrix::platform
