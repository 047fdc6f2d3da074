// A database that fails: the list keeps what was recorded.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <memory>
#include <string>

#include "tests/live/MainViewFixture.h"
#include "tests/support/FailingVfs.h"

namespace kestrix::live {
namespace {

constexpr const char* kOpeningFailed = "数据库创建失败";
constexpr const char* kStatementFailed = "数据操作失败";

class FailingDatabaseTest : public MainViewFixture {
  protected:
    void recordOne() {
        receive(recordOf('1'));
        screen_->pressRecord();
    }
    QString database() const { return documents_.filePath(QStringLiteral("kestrix.sqlite")); }
};

TEST_F(FailingDatabaseTest, WithoutTablesTheRowStaysInTheListAndTheLogSaysIt) {
    ASSERT_TRUE(QFile::remove(database()));
    start();
    screen_->viewStatus(1);
    testing::expectWarning(kStatementFailed);
    recordOne();
    ASSERT_EQ(screen_->array.count(), 1);
    EXPECT_TRUE(notice_.text().startsWith(QStringLiteral("S_1 was not stored: ")))
        << notice_.text().toStdString();
    EXPECT_EQ(screen_->array.row(0).Result, "1.23MΩ,45.6V");
    EXPECT_EQ(rightImage(), "orvo_home_button_save.png");
    EXPECT_TRUE(storedMeasures().empty());
}

TEST_F(FailingDatabaseTest, WithoutAFolderTheRowStaysInTheListAndTheLogSaysIt) {
    documents_ = platform::DocumentsFolder(folder_.filePath(QStringLiteral("missing")));
    testing::expectWarning(kOpeningFailed);
    start();
    testing::expectWarning(kOpeningFailed);
    testing::expectWarning(kStatementFailed);
    recordOne();
    EXPECT_EQ(screen_->array.count(), 1);
}

TEST_F(FailingDatabaseTest, OnAFullDiskTheRowStaysAndTheNextPressIsStoredOnceThereIsRoom) {
    testing::FailingVfs files;
    start();
    postState("1");
    files.fail(testing::FailingVfs::Call::Write, "kestrix.sqlite-journal", SQLITE_FULL);
    testing::expectWarning(kStatementFailed);
    recordOne();
    files.heal();
    screen_->pressRecord();
    EXPECT_EQ(screen_->array.count(), 2);
    const auto stored = storedMeasures();
    ASSERT_EQ(stored.size(), 1U);
    EXPECT_EQ(stored[0].dataName, "S_2");
    EXPECT_EQ(screen_->array.at(0).mark, QStringLiteral("Not stored"));
    EXPECT_EQ(screen_->array.at(1).mark, QString()) << "what is stored is not marked";
    screen_.reset();  // its connection goes before the files
}

TEST_F(FailingDatabaseTest, WhoSavesIsToldOfRowsThatWereNeverStored) {
    testing::FailingVfs files;
    start();
    postState("1");
    recordOne();
    files.fail(testing::FailingVfs::Call::Write, "kestrix.sqlite-journal", SQLITE_FULL);
    testing::expectWarning(kStatementFailed);
    recordOne();
    files.heal();
    recordOne();
    notice_.clear();
    screen_->pressClearTable();
    EXPECT_EQ(notice_.text(), QStringLiteral("Not in the test record, because never stored: S_2"));
    notice_.clear();
    recordOne();
    screen_->pressClearTable();
    EXPECT_FALSE(notice_.isShown()) << "all were stored";
}

TEST_F(FailingDatabaseTest, EveryThirdPressScrollsThoughNothingIsStored) {
    ASSERT_TRUE(QFile::remove(database()));
    start();
    int scrolls = 0;
    QObject::connect(&screen_->tableView, &ui::Table::lastRowAsked, screen_.get(), [&] { ++scrolls; });
    for (int i = 0; i < 3; ++i) {
        testing::expectWarning(kStatementFailed);
        recordOne();
    }
    EXPECT_EQ(screen_->array.row(2).DataName, "S_3");
    EXPECT_EQ(scrolls, 1);
}

}  // namespace
}  // namespace kestrix::live
