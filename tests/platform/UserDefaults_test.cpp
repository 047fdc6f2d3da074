#include "platform/UserDefaults.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <random>
#include <vector>

#include "tests/support/LogExpectations.h"

namespace kestrix::platform {
namespace {

class UserDefaultsTest : public ::testing::Test {
  protected:
    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("deep/kestrix.ini"));

    static QByteArray textOf(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    QByteArray fileText() const { return textOf(path_); }
    void holdText(const char* content) const {
        QDir().mkpath(QFileInfo(path_).absolutePath());
        QFile file(path_);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static struct stat stateOf(const QString& path) {
        struct stat state {};
        EXPECT_EQ(stat(qPrintable(path), &state), 0) << path.toStdString();
        return state;
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
    const auto file = stateOf(path_);
    UserDefaults defaults(path_);
    defaults.setInteger(QStringLiteral("bluestate"), 0);
    EXPECT_EQ(stateOf(path_).st_ino, file.st_ino);
    defaults.setInteger(QStringLiteral("bluestate"), 1);
    EXPECT_NE(stateOf(path_).st_ino, file.st_ino);
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

TEST_F(UserDefaultsTest, ADamagedFileOfOursIsMovedAsideAndSaidOnce) {
    holdText("[Kestrix]\nno equals sign");
    testing::expectWarning("is damaged; kept as");
    UserDefaults defaults(path_);
    EXPECT_EQ(defaults.problem(), QString());
    defaults.setInteger(QStringLiteral("bluestate"), 1);
    EXPECT_EQ(UserDefaults(path_).integerForKey(QStringLiteral("bluestate")), 1);
    EXPECT_EQ(textOf(path_ + QStringLiteral(".damaged")), "[Kestrix]\nno equals sign");
}

TEST_F(UserDefaultsTest, AFileMovedAsideTakesNoOtherFilesName) {
    for (const char* content : {"[Kestrix]\nfirst", "[Kestrix]\nsecond", "[Kestrix]\nthird"}) {
        holdText(content);
        testing::expectWarning("is damaged; kept as");
        UserDefaults(path_).setBool(QStringLiteral("firstOrvo"), true);
    }
    EXPECT_EQ(textOf(path_ + QStringLiteral(".damaged")), "[Kestrix]\nfirst");
    EXPECT_EQ(textOf(path_ + QStringLiteral(".damaged2")), "[Kestrix]\nsecond");
    EXPECT_EQ(textOf(path_ + QStringLiteral(".damaged3")), "[Kestrix]\nthird");
}

TEST_F(UserDefaultsTest, AFileOfBeforeIsReadAndGetsItsMark) {
    holdText("[General]\nbluestate=1\nfirstOrvo=true\ntablesMissing=false\n");
    UserDefaults defaults(path_);
    EXPECT_EQ(defaults.problem(), QString());
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("bluestate")), 1);
    defaults.setInteger(QStringLiteral("bluestate"), 0);
    EXPECT_EQ(fileText(), "[Kestrix]\nbluestate=0\nfirstOrvo=true\ntablesMissing=false\n");
}

TEST_F(UserDefaultsTest, AnEmptyFileIsTakenForOurs) {
    holdText("");
    UserDefaults(path_).setBool(QStringLiteral("firstOrvo"), true);
    EXPECT_EQ(fileText(), "[Kestrix]\nfirstOrvo=true\n");
}

TEST_F(UserDefaultsTest, AFileOfAnotherProgramIsRefusedAndLeftAsItIs) {
    for (const char* content :
         {"[General]\ncolour=green\n", "[user]\n  name = Jo\n", "bluestate=1\n", "# a note\n", "\n\n \n", " ",
          "not an ini file", "[General]\nbluestate=1\nno equals sign\n",
          "\x7f"
          "ELF"}) {
        holdText(content);
        const auto before = stateOf(path_);
        UserDefaults defaults(path_);
        EXPECT_EQ(defaults.problem(),
                  QStringLiteral("settings file %1 is not one of Kestrix's; it is left as it is").arg(path_));
        EXPECT_EQ(defaults.integerForKey(QStringLiteral("bluestate")), 0);
        testing::expectWarning("cannot be written; firstOrvo is not kept");
        defaults.setBool(QStringLiteral("firstOrvo"), true);
        EXPECT_EQ(fileText(), content);
        EXPECT_EQ(stateOf(path_).st_ino, before.st_ino);
        EXPECT_EQ(stateOf(path_).st_mode, before.st_mode);
        EXPECT_FALSE(QFile::exists(path_ + QStringLiteral(".damaged")));
    }
}

TEST_F(UserDefaultsTest, WhatIsNoRegularFileIsRefusedWithoutWaitingForIt) {
    holdText("");
    ASSERT_TRUE(QFile::remove(path_));
    ASSERT_EQ(mkfifo(qPrintable(path_), 0600), 0);
    for (const QString& path : {path_, folder_.path(), QStringLiteral("/dev/null")}) {
        EXPECT_EQ(UserDefaults(path).problem(),
                  QStringLiteral("settings file %1 is no regular file; it is left as it is").arg(path));
    }
}

TEST_F(UserDefaultsTest, AnEndlessFileIsRefused) {
    holdText(QByteArray(QByteArray("[Kestrix]\n") + QByteArray(2 << 20, '\n')).constData());
    EXPECT_NE(UserDefaults(path_).problem(), QString());
}

TEST_F(UserDefaultsTest, OnlyTheOwnerMayReadTheFile) {
    UserDefaults(path_).setInteger(QStringLiteral("bluestate"), 1);
    EXPECT_EQ(stateOf(path_).st_mode & 07777, 0600U);
    EXPECT_EQ(stateOf(folder_.filePath(QStringLiteral("deep"))).st_mode & 07777, 0700U);
    ASSERT_EQ(chmod(qPrintable(path_), 0644), 0);  // as a file of before
    const UserDefaults again(path_);
    EXPECT_EQ(stateOf(path_).st_mode & 07777, 0600U);
}

TEST_F(UserDefaultsTest, ALinkToTheFileStaysALink) {
    UserDefaults(path_).setInteger(QStringLiteral("bluestate"), 1);
    const QString link = folder_.filePath(QStringLiteral("link.ini"));
    ASSERT_TRUE(QFile::link(path_, link));
    UserDefaults(link).setInteger(QStringLiteral("bluestate"), 2);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_TRUE(fileText().contains("bluestate=2"));
}

TEST_F(UserDefaultsTest, TextsComeBackWithoutTheirLineEnds) {
    UserDefaults(path_).setString(QStringLiteral("tablesIn"), QStringLiteral("/a b/ä=ö\n[x]"));
    EXPECT_EQ(UserDefaults(path_).stringForKey(QStringLiteral("tablesIn")), QStringLiteral("/a b/ä=ö [x]"));
}

TEST_F(UserDefaultsTest, TwoUsersOfOneFileKeepEachOthersKeys) {
    UserDefaults first(path_);
    UserDefaults second(path_);
    first.setInteger(QStringLiteral("bluestate"), 1);
    second.setBool(QStringLiteral("firstOrvo"), true);
    first.setInteger(QStringLiteral("bluestate"), 2);
    EXPECT_EQ(fileText(), "[Kestrix]\nbluestate=2\nfirstOrvo=true\n");
    second.setInteger(QStringLiteral("bluestate"), 1);
    first.setInteger(QStringLiteral("bluestate"), 2);  // unchanged for it, but not in the file
    EXPECT_EQ(fileText(), "[Kestrix]\nbluestate=2\nfirstOrvo=true\n");
}

// Each of several processes counts a key of its own up; in the end every one stands where it stopped.
TEST_F(UserDefaultsTest, ProcessesThatWriteAtOnceLoseNothing) {
    constexpr int kProcesses = 4;
    constexpr int kChanges = 25;
    UserDefaults(path_).setBool(QStringLiteral("firstOrvo"), true);
    std::vector<pid_t> children;
    for (int i = 0; i < kProcesses; ++i) {
        children.push_back(fork());
        if (children.back() != 0) continue;
        UserDefaults defaults(path_);
        for (int value = 1; value <= kChanges; ++value)
            defaults.setInteger(QStringLiteral("key%1").arg(i), value);
        _exit(0);
    }
    for (const pid_t child : children) waitpid(child, nullptr, 0);
    const UserDefaults defaults(path_);
    for (int i = 0; i < kProcesses; ++i)
        EXPECT_EQ(defaults.integerForKey(QStringLiteral("key%1").arg(i)), kChanges) << i;
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("firstOrvo")));
}

TEST_F(UserDefaultsTest, AFolderThatVanishesIsNotMadeAnewAndWorksWhenItIsBack) {
    UserDefaults defaults(path_);
    defaults.setBool(QStringLiteral("firstOrvo"), true);
    const QString deep = folder_.filePath(QStringLiteral("deep"));
    ASSERT_TRUE(QDir().rename(deep, deep + QStringLiteral(".gone")));
    testing::expectWarning("cannot be written; bluestate is not kept");
    defaults.setInteger(QStringLiteral("bluestate"), 1);
    defaults.setInteger(QStringLiteral("bluestate"), 2);  // said once
    EXPECT_FALSE(QFile::exists(deep));
    ASSERT_TRUE(QDir().rename(deep + QStringLiteral(".gone"), deep));
    defaults.setInteger(QStringLiteral("bluestate"), 3);
    EXPECT_EQ(fileText(), "[Kestrix]\nbluestate=3\nfirstOrvo=true\n");
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
