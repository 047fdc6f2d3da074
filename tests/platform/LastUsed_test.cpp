#include "platform/LastUsed.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace kestrix::platform {
namespace {

TEST(LastUsed, IsKeptInTheSettings) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("kestrix.ini"));
    UserDefaults settings(path);
    const LastUsed lastUsed = lastUsedIn(settings);
    EXPECT_EQ(lastUsed.read(), "");
    lastUsed.write("bluetooth:AA:BB:CC:DD:EE:FF");
    EXPECT_EQ(lastUsed.read(), "bluetooth:AA:BB:CC:DD:EE:FF");
    UserDefaults later(path);
    EXPECT_EQ(lastUsedIn(later).read(), "bluetooth:AA:BB:CC:DD:EE:FF");
}

TEST(LastUsed, IsWrittenWhenItIsAnotherOnly) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("kestrix.ini"));
    UserDefaults settings(path);
    const LastUsed lastUsed = lastUsedIn(settings);
    lastUsed.write("bluetooth:AA:BB:CC:DD:EE:FF");
    ASSERT_TRUE(QFile::remove(path));
    lastUsed.write("bluetooth:AA:BB:CC:DD:EE:FF");
    EXPECT_FALSE(QFile::exists(path));
    lastUsed.write("bluetooth:AA:BB:CC:DD:EE:00");
    EXPECT_TRUE(QFile::exists(path));
}

}  // namespace
}  // namespace kestrix::platform
