#include "history/ExportFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "tests/history/NearlyFullDisk.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SystemText.h"

namespace kestrix::history {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* kName = "20260304050607.csv";

// While it lives, the superuser has the rights of somebody else.
class AsSomebody {
  public:
    AsSomebody() {
        if (isRoot_ && seteuid(65534) != 0) ADD_FAILURE() << "seteuid";
    }
    AsSomebody(const AsSomebody&) = delete;
    AsSomebody& operator=(const AsSomebody&) = delete;
    ~AsSomebody() {
        if (isRoot_ && seteuid(0) != 0) ADD_FAILURE() << "seteuid";
    }

  private:
    bool isRoot_ = geteuid() == 0;
};

class ExportFiles : public ::testing::Test {
  protected:
    QTemporaryDir temporary_;
    platform::DocumentsFolder folder_{temporary_.filePath(QStringLiteral("documents"))};
    QString path_ = folder_.filePath(QLatin1String(kName));
    std::size_t descriptors_ = 0;

    void SetUp() override {
        ASSERT_TRUE(QDir().mkdir(folder_.path()));
        descriptors_ = testing::openDescriptors();
    }
    void TearDown() override { EXPECT_EQ(testing::openDescriptors(), descriptors_); }

    static FileContent content(const std::string& bytes) {
        return [bytes](const ExportSink& sink) { return sink(bytes); };
    }
    storage::Outcome write(const std::string& bytes) const {
        return writeFileInFolder(folder_, kName, content(bytes));
    }
    static QByteArray contentOf(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    QStringList names() const {
        return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    }
    QString outside() const { return temporary_.filePath(QStringLiteral("outside")); }
    void makeOutside() const {
        QFile file(outside());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write("of the user"), 11);
    }
};

TEST_F(ExportFiles, ItHoldsWhatWasWrittenAndIsItsOwnersAlone) {
    const mode_t before = umask(0);
    EXPECT_EQ(write("one\ntwo"), storage::Outcome{});
    umask(before);
    EXPECT_EQ(contentOf(path_), "one\ntwo");
    struct stat state {};
    ASSERT_EQ(stat(qPrintable(path_), &state), 0);
    EXPECT_EQ(state.st_mode & 07777, 0600U);
    EXPECT_EQ(names(), QStringList(QLatin1String(kName)));
}

TEST_F(ExportFiles, OneOfTheSameNameIsReplacedWithItsRights) {
    ASSERT_TRUE(write("the first one, which is longer").done);
    ASSERT_EQ(chmod(qPrintable(path_), 0644), 0);
    EXPECT_TRUE(write("the second").done);
    EXPECT_EQ(contentOf(path_), "the second");
    struct stat state {};
    ASSERT_EQ(stat(qPrintable(path_), &state), 0);
    EXPECT_EQ(state.st_mode & 07777, 0600U);
}

TEST_F(ExportFiles, AFullDiskIsToldAndLeavesNoHalfFile) {
    const NearlyFullDisk disk(100);
    const storage::Outcome outcome = write(std::string(1000, 'x'));
    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(outcome.reason, "the disk is full (" + testing::systemText(EFBIG) + ")");
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ExportFiles, AfterAFailureNothingMoreIsWritten) {
    const NearlyFullDisk disk(100);
    int failures = 0;
    const storage::Outcome outcome = writeFileInFolder(folder_, kName, [&](const ExportSink& sink) {
        for (int i = 0; i < 3; ++i) failures += sink(std::string(90, 'x')).done ? 0 : 1;
        return storage::Outcome{};  // who does not listen does not hide it
    });
    EXPECT_EQ(failures, 2);
    EXPECT_THAT(outcome.reason, StartsWith("the disk is full"));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ExportFiles, WhatCannotBeReadLeavesNoHalfFile) {
    const storage::Outcome outcome = writeFileInFolder(folder_, kName, [](const ExportSink& sink) {
        EXPECT_TRUE(sink("half").done);
        return storage::Outcome{false, "another program holds the database", 0};
    });
    EXPECT_EQ(outcome, (storage::Outcome{false, "another program holds the database", 0}));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ExportFiles, AFolderThatMayNotBeWrittenIsTold) {
    const AsSomebody somebody;
    const platform::DocumentsFolder readOnly(QStringLiteral("/"));
    EXPECT_EQ(writeFileInFolder(readOnly, kName, content("x")).reason,
              "the folder / may not be written by this user (" + testing::systemText(EACCES) + ")");
}

TEST_F(ExportFiles, AFolderThatHasGoneIsToldAndNotMadeAnew) {
    ASSERT_TRUE(QDir().rmdir(folder_.path()));
    const storage::Outcome outcome = write("x");
    EXPECT_EQ(outcome.reason, "there is no folder " + folder_.path().toStdString() + " (" +
                                  testing::systemText(ENOENT) + ")");
    EXPECT_FALSE(QFile::exists(folder_.path()));
}

TEST_F(ExportFiles, AFolderWhoseGuardKeepsItOutIsNotTouched) {
    folder_.setGuard([] { return std::string("another window has the folder"); });
    EXPECT_EQ(write("x"), (storage::Outcome{false, "another window has the folder", 0}));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ExportFiles, ALinkInItsPlaceIsNotFollowed) {
    makeOutside();
    ASSERT_TRUE(QFile::link(outside(), path_));
    EXPECT_EQ(write("x").reason, std::string(kName) + " is there and is no file of Kestrix");
    EXPECT_EQ(contentOf(outside()), "of the user");
    EXPECT_TRUE(QFile::symLinkTarget(path_).endsWith(QLatin1String("outside"))) << "it stays";
}

TEST_F(ExportFiles, ALinkToNothingMakesNoFileElsewhere) {
    ASSERT_TRUE(QFile::link(outside(), path_));
    EXPECT_FALSE(write("x").done);
    EXPECT_FALSE(QFile::exists(outside()));
}

TEST_F(ExportFiles, AFileWithASecondNameIsNotWritten) {
    makeOutside();
    ASSERT_EQ(link(qPrintable(outside()), qPrintable(path_)), 0);
    EXPECT_EQ(write("x").reason, std::string(kName) + " is there and is no file of Kestrix");
    EXPECT_EQ(contentOf(outside()), "of the user");
    EXPECT_EQ(contentOf(path_), "of the user");
}

TEST_F(ExportFiles, APipeInItsPlaceHoldsNobodyUp) {
    ASSERT_EQ(mkfifo(qPrintable(path_), 0600), 0);
    EXPECT_THAT(write("x").reason, HasSubstr("is no file of Kestrix"));
    EXPECT_EQ(names(), QStringList(QLatin1String(kName)));
}

TEST_F(ExportFiles, AFolderInItsPlaceStays) {
    ASSERT_TRUE(QDir().mkdir(path_));
    EXPECT_THAT(write("x").reason, HasSubstr("is no file of Kestrix"));
    EXPECT_TRUE(QDir(path_).exists());
}

TEST_F(ExportFiles, ANewFileIsMadeWhereTheUserSays) {
    const QString path = temporary_.filePath(QStringLiteral("it is mine.csv"));
    EXPECT_EQ(writeNewFile(path, content("new")), storage::Outcome{});
    EXPECT_EQ(contentOf(path), "new");
}

TEST_F(ExportFiles, ANewFileReplacesNone) {
    makeOutside();
    EXPECT_EQ(writeNewFile(outside(), content("x")).reason,
              "outside is there already (" + testing::systemText(EEXIST) + ")");
    EXPECT_EQ(contentOf(outside()), "of the user");
}

TEST_F(ExportFiles, ANewFileThatFailsGoes) {
    const NearlyFullDisk disk(100);
    EXPECT_THAT(writeNewFile(outside(), content(std::string(1000, 'x'))).reason,
                StartsWith("the disk is full"));
    EXPECT_FALSE(QFile::exists(outside()));
}

}  // namespace
}  // namespace kestrix::history
