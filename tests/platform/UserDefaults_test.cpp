#include "platform/UserDefaults.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QFile>
#include <QTemporaryDir>

#include <random>

#include "tests/support/LogExpectations.h"

namespace kestrix::platform {
namespace {

class UserDefaultsTest : public ::testing::Test {
  protected:
    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("deep/kestrix.ini"));

    QByteArray fileText() const {
        QFile file(path_);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

TEST_F(UserDefaultsTest, AKeyThatWasNeverSetIsZeroOrFalse) {
    const UserDefaults defaults(path_);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("bluestate")), 0);
    EXPECT_FALSE(defaults.boolForKey(QStringLiteral("firstOrvo")));
}

TEST_F(UserDefaultsTest, LookingLeavesNoFile) {
    const UserDefaults defaults(path_);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("bluestate")), 0);
    EXPECT_FALSE(QFile::exists(path_));
}

TEST_F(UserDefaultsTest, AChangeIsInTheFileAtOnce) {
    UserDefaults defaults(path_);
    defaults.setInteger(QStringLiteral("bluestate"), 1);
    EXPECT_TRUE(fileText().contains("bluestate=1"));
    defaults.setBool(QStringLiteral("firstOrvo"), true);
    EXPECT_TRUE(fileText().contains("firstOrvo=true"));
}

TEST_F(UserDefaultsTest, AnotherReaderSeesTheValues) {
    UserDefaults defaults(path_);
    defaults.setInteger(QStringLiteral("bluestate"), -7);
    defaults.setBool(QStringLiteral("firstOrvo"), true);
    const UserDefaults reader(path_);
    EXPECT_EQ(reader.integerForKey(QStringLiteral("bluestate")), -7);
    EXPECT_TRUE(reader.boolForKey(QStringLiteral("firstOrvo")));
}

TEST_F(UserDefaultsTest, AnUnchangedValueDoesNotWriteTheFileAgain) {
    UserDefaults(path_).setInteger(QStringLiteral("bluestate"), 0);
    UserDefaults defaults(path_);
    QFile::remove(path_);
    defaults.setInteger(QStringLiteral("bluestate"), 0);
    EXPECT_FALSE(QFile::exists(path_));
    defaults.setInteger(QStringLiteral("bluestate"), 1);
    EXPECT_TRUE(fileText().contains("bluestate=1"));
}

TEST_F(UserDefaultsTest, AZeroThatWasNeverSetIsWritten) {
    UserDefaults(path_).setInteger(QStringLiteral("bluestate"), 0);
    EXPECT_TRUE(fileText().contains("bluestate=0"));
}

TEST_F(UserDefaultsTest, AValueThatCouldNotBeWrittenIsTriedAgain) {
    path_ = folder_.filePath(QStringLiteral("file/kestrix.ini"));
    QFile inTheWay(folder_.filePath(QStringLiteral("file")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    UserDefaults defaults(path_);
    testing::expectWarning("cannot be written; bluestate is not kept");
    defaults.setInteger(QStringLiteral("bluestate"), 1);
    ASSERT_TRUE(inTheWay.remove());
    defaults.setInteger(QStringLiteral("bluestate"), 1);
    EXPECT_TRUE(fileText().contains("bluestate=1"));
}

TEST_F(UserDefaultsTest, ADamagedFileIsMovedAsideAndSaidOnce) {
    path_ = folder_.filePath(QStringLiteral("kestrix.ini"));
    {
        QFile file(path_);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[broken\nno equals sign");
    }
    testing::expectWarning("is damaged; kept as");
    UserDefaults defaults(path_);
    defaults.setInteger(QStringLiteral("bluestate"), 1);
    EXPECT_EQ(UserDefaults(path_).integerForKey(QStringLiteral("bluestate")), 1);
    QFile aside(path_ + QStringLiteral(".damaged"));
    ASSERT_TRUE(aside.open(QIODevice::ReadOnly));
    EXPECT_EQ(aside.readAll(), "[broken\nno equals sign");
}

TEST_F(UserDefaultsTest, AFileThatCannotBeWrittenIsSaidInOneLine) {
    UserDefaults defaults(QStringLiteral("/proc/kestrix/kestrix.ini"));
    testing::expectWarning(
        "settings file /proc/kestrix/kestrix.ini cannot be written; bluestate is not kept");
    defaults.setInteger(QStringLiteral("bluestate"), 1);
}

// A process is killed in the middle of its writing, again and again: the file always holds one of its values
// whole.
TEST_F(UserDefaultsTest, AKillAtAnyMomentLeavesAWholeFile) {
    UserDefaults(path_).setInteger(QStringLiteral("bluestate"), 1'000'000);
    std::mt19937 random(6);  // NOLINT(cert-msc51-cpp)
    int changed = 0;
    for (int round = 0; round < 20; ++round) {
        int progress[2];
        ASSERT_EQ(pipe(progress), 0);
        const pid_t child = fork();
        if (child == 0) {
            UserDefaults defaults(path_);
            for (int value = 1'000'000;; ++value) {
                defaults.setInteger(QStringLiteral("bluestate"), value);
                if (write(progress[1], ".", 1) != 1) _exit(1);
            }
        }
        // Killed after a random number of writes, wherever the next one stands then.
        close(progress[1]);
        char byte = 0;
        for (auto writes = 1 + random() % 8; writes > 0; --writes) ASSERT_EQ(read(progress[0], &byte, 1), 1);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        close(progress[0]);
        const int value = UserDefaults(path_).integerForKey(QStringLiteral("bluestate"));
        ASSERT_GE(value, 1'000'000) << "round " << round;
        if (value > 1'000'000) ++changed;
    }
    EXPECT_GT(changed, 0);
}

}  // namespace
}  // namespace kestrix::platform
