#include "platform/DocumentsFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/support/LogExpectations.h"

namespace kestrix::platform {
namespace {

TEST(DocumentsFolder, EnsureMakesTheFolder) {
    const QTemporaryDir base;
    const DocumentsFolder folder(base.filePath(QStringLiteral("a/b")));
    EXPECT_TRUE(folder.ensure());
    EXPECT_TRUE(QDir(folder.path()).exists());
    EXPECT_TRUE(folder.ensure());
}

mode_t rightsOf(const QString& path) {
    struct stat state {};
    EXPECT_EQ(stat(qPrintable(path), &state), 0) << path.toStdString();
    return state.st_mode & 07777;
}

// The user's home folder while it lives.
class HomeIn {
  public:
    explicit HomeIn(const QString& path) { qputenv("HOME", path.toUtf8()); }
    HomeIn(const HomeIn&) = delete;
    HomeIn& operator=(const HomeIn&) = delete;
    ~HomeIn() { qputenv("HOME", before_); }

  private:
    QByteArray before_ = qgetenv("HOME");
};

TEST(DocumentsFolder, AFolderThatIsMadeIsItsOwnersAlone) {
    const QTemporaryDir base;
    ASSERT_TRUE(DocumentsFolder(base.filePath(QStringLiteral("a/b"))).ensure());
    EXPECT_EQ(rightsOf(base.filePath(QStringLiteral("a"))), 0700U);
    EXPECT_EQ(rightsOf(base.filePath(QStringLiteral("a/b"))), 0700U);
}

TEST(DocumentsFolder, AFolderOfTheUsersKeepsItsRights) {
    const QTemporaryDir base;
    ASSERT_EQ(chmod(qPrintable(base.path()), 0755), 0);
    ASSERT_TRUE(DocumentsFolder(base.path()).ensure());
    EXPECT_EQ(rightsOf(base.path()), 0755U);
}

TEST(DocumentsFolder, TheStandardFoldersOfBeforeBecomeTheirOwnersAlone) {
    const QTemporaryDir home;
    const HomeIn during(home.path());
    for (const QString& path : {DocumentsFolder::standardPath(), DocumentsFolder::simulatedPath()}) {
        ASSERT_TRUE(path.startsWith(home.path())) << path.toStdString();
        ASSERT_TRUE(QDir().mkpath(path));
        ASSERT_EQ(chmod(qPrintable(path), 0755), 0);
        ASSERT_TRUE(DocumentsFolder(path).ensure());
        EXPECT_EQ(rightsOf(path), 0700U);
    }
}

TEST(DocumentsFolder, OneFolderByTwoNamesIsTheSame) {
    const QTemporaryDir base;
    const QString link = base.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QDir(base.path()).mkdir(QStringLiteral("real")));
    ASSERT_TRUE(QFile::link(base.filePath(QStringLiteral("real")), link));
    const DocumentsFolder folder(base.filePath(QStringLiteral("real")));
    EXPECT_TRUE(folder.isSameAs(link));
    EXPECT_TRUE(folder.isSameAs(base.filePath(QStringLiteral("./real/"))));
    EXPECT_FALSE(folder.isSameAs(base.path()));
    EXPECT_TRUE(DocumentsFolder(QStringLiteral("/none/a/../b")).isSameAs(QStringLiteral("/none/b/")));
}

TEST(DocumentsFolder, FilesStandInsideIt) {
    EXPECT_EQ(DocumentsFolder(QStringLiteral("/a/b")).filePath(QStringLiteral("kestrix.sqlite")),
              QStringLiteral("/a/b/kestrix.sqlite"));
}

TEST(DocumentsFolder, AFolderThatCannotBeMadeIsSaidInOneLine) {
    testing::expectWarning("documents folder /proc/kestrix cannot be made");
    EXPECT_FALSE(DocumentsFolder(QStringLiteral("/proc/kestrix")).ensure());
}

TEST(DocumentsFolder, TheStandardFolderIsTheUsersOwn) {
    EXPECT_TRUE(DocumentsFolder::standardPath().endsWith(QStringLiteral("/Kestrix")));
    EXPECT_EQ(DocumentsFolder::simulatedPath(),
              DocumentsFolder::standardPath() + QStringLiteral(" simulated"));
}

}  // namespace
}  // namespace kestrix::platform
