#include "platform/DocumentsFolder.h"

#include <gtest/gtest.h>

#include <QDir>
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
}

}  // namespace
}  // namespace kestrix::platform
