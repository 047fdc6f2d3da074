#include "platform/PrivateFiles.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <csignal>

namespace {

// What was synchronised with the disk since the last look.
QStringList synchronised;  // NOLINT(cert-err58-cpp)

}  // namespace

// In this program it stands in front of the system's own.
extern "C" int fsync(int descriptor) {
    synchronised << QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

namespace kestrix::platform {
namespace {

class PrivateFiles : public ::testing::Test {
  protected:
    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("file"));

    static mode_t rightsOf(const QString& path) {
        struct stat state {};
        EXPECT_EQ(stat(qPrintable(path), &state), 0) << path.toStdString();
        return state.st_mode & 07777;
    }
    QByteArray content() const {
        QFile file(path_);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    QStringList names() const {
        return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
};

TEST_F(PrivateFiles, AFileThatIsMadeIsEmptyAndItsOwnersAlone) {
    EXPECT_TRUE(makePrivateFile(path_));
    EXPECT_EQ(rightsOf(path_), 0600U);
    EXPECT_EQ(content(), "");
}

TEST_F(PrivateFiles, AFileThatIsThereStaysAsItIs) {
    ASSERT_TRUE(replacePrivateFile(path_, "text"));
    ASSERT_EQ(chmod(qPrintable(path_), 0640), 0);
    EXPECT_TRUE(makePrivateFile(path_));
    EXPECT_EQ(content(), "text");
    EXPECT_EQ(rightsOf(path_), 0640U);
}

TEST_F(PrivateFiles, KeepingPrivateTakesOnlyWhatOthersHad) {
    ASSERT_TRUE(makePrivateFile(path_));
    ASSERT_EQ(chmod(qPrintable(path_), 0444), 0);
    EXPECT_TRUE(keepPrivate(path_));
    EXPECT_EQ(rightsOf(path_), 0400U);
    EXPECT_TRUE(keepPrivate(folder_.filePath(QStringLiteral("missing"))));
}

TEST_F(PrivateFiles, AReplacedFileLeavesNothingBesideIt) {
    EXPECT_TRUE(replacePrivateFile(path_, "one"));
    EXPECT_TRUE(replacePrivateFile(path_, "two"));
    EXPECT_EQ(content(), "two");
    EXPECT_EQ(names(), QStringList{QStringLiteral("file")});
    EXPECT_EQ(rightsOf(path_), 0600U);
}

// A name that is only in memory is lost with the power: the old file would be back.
TEST_F(PrivateFiles, TheContentAndThenItsNameAreOnTheDiskWhenItReturns) {
    const QString folder = QFileInfo(folder_.path()).canonicalFilePath();
    synchronised.clear();
    ASSERT_TRUE(replacePrivateFile(path_, "text"));
    ASSERT_EQ(synchronised.size(), 2);
    EXPECT_TRUE(synchronised[0].startsWith(folder + QStringLiteral("/file.")))
        << synchronised[0].toStdString();
    EXPECT_EQ(synchronised[1], folder);
}

// What a full disk answers.
TEST_F(PrivateFiles, AWriteThatFailsLeavesTheFileAsItWas) {
    ASSERT_TRUE(replacePrivateFile(path_, "before"));
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100, 100};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(replacePrivateFile(path_, QByteArray(5000, 'x')) ? 1 : 0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content(), "before");
    EXPECT_EQ(names(), QStringList{QStringLiteral("file")});
}

TEST_F(PrivateFiles, AFolderLockHoldsOthersOffUntilItGoes) {
    const int other = open(qPrintable(folder_.path()), O_RDONLY | O_CLOEXEC);
    {
        const FolderLock lock(folder_.path());
        EXPECT_NE(flock(other, LOCK_EX | LOCK_NB), 0);
    }
    EXPECT_EQ(flock(other, LOCK_EX | LOCK_NB), 0);
    close(other);
}

}  // namespace
}  // namespace kestrix::platform
