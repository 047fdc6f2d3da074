// The list of test records without its view.
#include "storage/RightSideBarViewController.h"

#include <gtest/gtest.h>

#include <QFile>

#include "storage/Selection.h"
#include "tests/storage/StorageFixture.h"
#include "tests/support/TestServices.h"
#include "ui/ScreenNotifications.h"

namespace kestrix::storage {
namespace {

using Call = testing::FailingVfs::Call;

class RecordListTest : public ::testing::Test {
  protected:
    RecordListTest() {
        vfs_.skipSyncs();
        dao_.emplace(services_.documents);
        dao_->createTable();
        list_.loadView();
    }
    // The record's identity.
    std::int64_t save(const std::string& project, int measurements) {
        std::vector<MeasureData> own;
        for (int number = 1; number <= measurements; ++number) {
            dao_->addMeasureForm(measurement(number));
            own.push_back(dao_->findMeasureofDataId(dao_->lastOutcome().identity).at(0));
        }
        RecordData record;
        record.projectName = project;
        record.samples = measurements;
        return fileMeasurements(*dao_, completed(record, "2015-03-02 14:05:33"), own).identity;
    }
    static void reveal() { platform::NotificationCenter::defaultCenter().post({ui::NSRecordData}); }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (int row = 0; row < list_.array.count(); ++row)
            names.push_back(list_.array.at(row).texts.front().toStdString());
        return names;
    }
    std::string notice() const { return services_.notice.text().toStdString(); }

    testing::FailingVfs vfs_;
    testing::TestServices services_;
    std::string path_ = services_.documents.filePath(QStringLiteral("kestrix.sqlite")).toStdString();
    std::optional<ServiceDao> dao_;
    RightSideBarViewController list_{ui::ScreenId::RecordList, services_.services()};
};

using Names = std::vector<std::string>;

TEST_F(RecordListTest, WithNoRecordsTheListIsEmptySaysSoAndNothingCanBeChosen) {
    reveal();
    EXPECT_EQ(list_.array.count(), 0);
    EXPECT_TRUE(list_.myTableView.emptyText().startsWith(QStringLiteral("No test record is saved yet.")));
    list_.myTableView.choose(0);
    EXPECT_TRUE(services_.asked.empty());
}

TEST_F(RecordListTest, IsFilledWhenItIsRevealedAndOnlyThen) {
    save("House 7", 1);
    EXPECT_EQ(list_.array.count(), 0);
    reveal();
    EXPECT_EQ(names(), Names{"House 7"});
    save("House 8", 1);
    EXPECT_EQ(names(), Names{"House 7"});
    reveal();
    EXPECT_EQ(names(), (Names{"House 7", "House 8"})) << "oldest first";
}

TEST_F(RecordListTest, ARowHoldsProjectSamplesDateWithItsBlankAndTime) {
    const std::int64_t id = save("House 7", 3);
    reveal();
    EXPECT_EQ(list_.array.text(0, QStringLiteral("projectName")), QStringLiteral("House 7"));
    EXPECT_EQ(list_.array.text(0, QStringLiteral("Samples")), QStringLiteral("samples:  3"));
    EXPECT_EQ(list_.array.text(0, QStringLiteral("Dates")), QStringLiteral("2015-03-02 "));
    EXPECT_EQ(list_.array.text(0, QStringLiteral("Times")), QStringLiteral("14:05:33"));
    EXPECT_EQ(list_.array.recordId(0), id);
    EXPECT_EQ(list_.array.height(0), 50);
}

TEST_F(RecordListTest, ARecordSavedWithoutAProjectNameShowsABlank) {
    save("", 1);
    reveal();
    EXPECT_EQ(list_.array.at(0).texts.front(), QStringLiteral(" "));
}

TEST_F(RecordListTest, AChoicePresentsTheHistoryOfThatRecord) {
    save("House 7", 1);
    const std::int64_t second = save("House 8", 1);
    reveal();
    list_.myTableView.choose(1);
    EXPECT_EQ(selectedRecordId, second);
    EXPECT_EQ(services_.asked, (std::vector<std::string>{"present History animated"}));
}

TEST_F(RecordListTest, ADeletedRecordGoesWithItsMeasurementsAndNothingElse) {
    const std::int64_t first = save("House 7", 2);
    const std::int64_t second = save("House 8", 1);
    reveal();
    list_.commitDelete(0);
    EXPECT_EQ(names(), Names{"House 8"});
    EXPECT_TRUE(dao_->findRecordofId(first).empty());
    EXPECT_TRUE(dao_->findMeasureofId(first).empty());
    EXPECT_EQ(dao_->findMeasureofId(second).size(), 1U);
    EXPECT_EQ(notice(), "\u2068House 7\u2069 was deleted");
}

TEST_F(RecordListTest, ARecordWhoseMeasurementsWereGoneIsDeletedAlone) {
    const std::int64_t id = save("House 7", 1);
    dao_->DeleteMeasureFormData(dao_->findMeasureofId(id).at(0).dataId);
    reveal();
    list_.commitDelete(0);
    EXPECT_EQ(dao_->findRecordFormCount(), 0);
    EXPECT_TRUE(services_.notice.actionTitle() == QStringLiteral("Put back"));
}

TEST_F(RecordListTest, IsPutBackFromTheNoticeIdentitiesAndAll) {
    save("House 7", 2);
    save("House 8", 1);
    const auto records = dao_->findRecordForm();
    const auto measurements = dao_->findMeasureForm(true);
    reveal();
    list_.commitDelete(0);
    services_.notice.pressAction();
    EXPECT_EQ(dao_->findRecordForm(), records);
    EXPECT_EQ(dao_->findMeasureForm(true), measurements);
    EXPECT_EQ(names(), (Names{"House 7", "House 8"}));
    EXPECT_EQ(notice(), "\u2068House 7\u2069 was put back");
    EXPECT_TRUE(list_.btnPutBack.hidden());
}

TEST_F(RecordListTest, IsPutBackFromTheFootOfTheListLongAfterTheNoticeHasGone) {
    save("House 7", 2);
    reveal();
    EXPECT_TRUE(list_.lblDeleted.hidden());
    list_.commitDelete(0);
    services_.scheduler.advance(std::chrono::hours(2));
    EXPECT_FALSE(services_.notice.isShown());
    reveal();
    EXPECT_EQ(list_.lblDeleted.text(), QStringLiteral("Deleted: \u2068House 7\u2069"));
    services_.notice.clear();
    EXPECT_FALSE(list_.lblDeleted.hidden());
    list_.btnPutBack.press();
    EXPECT_EQ(names(), Names{"House 7"});
    EXPECT_EQ(dao_->findMeasureofId(1).size(), 2U);
    EXPECT_TRUE(list_.lblDeleted.hidden());
    list_.pressPutBack();
    EXPECT_EQ(list_.array.count(), 1);
}

TEST_F(RecordListTest, TheNoticeOfOneNeverPutsBackAnother) {
    save("House 7", 1);
    save("House 8", 1);
    reveal();
    list_.commitDelete(0);
    list_.commitDelete(0);
    EXPECT_EQ(notice(), "\u2068House 8\u2069 was deleted") << "the offer of the first one holds no longer";
    services_.notice.pressAction();
    EXPECT_EQ(names(), Names{"House 8"});
}

TEST_F(RecordListTest, AFailedDeleteTakesTheRowAwaySaysSoAndTheNextFillingShowsItAgain) {
    save("House 7", 2);
    reveal();
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    list_.commitDelete(0);
    vfs_.heal();
    EXPECT_EQ(names(), Names{});
    EXPECT_EQ(notice(), "The test record was not deleted: the disk is full (database or disk is full)");
    EXPECT_TRUE(list_.lblDeleted.hidden());
    EXPECT_EQ(dao_->findMeasureofId(1).size(), 2U);
    reveal();
    EXPECT_EQ(names(), Names{"House 7"});
}

TEST_F(RecordListTest, AFailedDeleteKeepsWhatWasDeletedBeforeToBePutBack) {
    save("House 7", 1);
    save("House 8", 1);
    reveal();
    list_.commitDelete(0);
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    list_.commitDelete(0);
    vfs_.heal();
    services_.notice.clear();
    list_.btnPutBack.press();
    reveal();
    EXPECT_EQ(names(), (Names{"House 7", "House 8"}));
}

TEST_F(RecordListTest, WhatWasDeletedFromOneDatabaseIsNotPutIntoAnother) {
    save("House 7", 1);
    reveal();
    list_.commitDelete(0);
    services_.notice.clear();
    const QString path = QString::fromStdString(path_);
    ASSERT_TRUE(QFile::rename(path, path + QStringLiteral(".old")));
    ASSERT_TRUE(QFile::copy(path + QStringLiteral(".old"), path));
    list_.btnPutBack.press();
    EXPECT_EQ(notice(), "The test record was not put back: it is of another database");
    reveal();
    EXPECT_EQ(names(), Names{});
}

TEST_F(RecordListTest, ARowWhoseIdentityIsAnotherRecordsByNowDeletesNothing) {
    save("House 7", 1);
    reveal();
    dao_->execSql("UPDATE recordfrom SET projectname = 'House 9'");  // as another file would have it
    list_.commitDelete(0);
    EXPECT_EQ(notice(), "The test records are others by now; nothing was deleted");
    EXPECT_EQ(names(), Names{"House 9"});
    EXPECT_EQ(dao_->findMeasureForm(true).size(), 1U);
}

TEST_F(RecordListTest, ARowOfARecordThatHasGrownSinceIsDeletedAllTheSame) {
    save("House 7", 1);
    reveal();
    dao_->execSql("UPDATE recordfrom SET samples = 4");
    list_.commitDelete(0);
    EXPECT_EQ(names(), Names{});
}

TEST_F(RecordListTest, OneThatCannotBePutBackSaysWhyAndCanBeLater) {
    save("House 7", 1);
    reveal();
    list_.commitDelete(0);
    services_.notice.clear();
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    expectWarnings(kStatementFailed, 1);
    list_.btnPutBack.press();
    vfs_.heal();
    EXPECT_EQ(notice(), "The test record was not put back: the disk is full (database or disk is full)");
    EXPECT_EQ(names(), Names{});
    list_.btnPutBack.press();
    EXPECT_EQ(names(), Names{"House 7"});
}

TEST_F(RecordListTest, RecordsThatCannotBeReadAreSaid) {
    save("House 7", 1);
    Connection other(path_);
    other.run("BEGIN EXCLUSIVE");
    reveal();
    other.run("ROLLBACK");
    const QString problem = QStringLiteral(
        "Not all test records could be read: another program holds the database (database is locked)");
    EXPECT_EQ(services_.notice.text(), problem);
    EXPECT_EQ(list_.myTableView.emptyText(), problem);
}

TEST_F(RecordListTest, OneSwipedRowShowsItsButtonUntilSomethingElseIsDone) {
    save("House 7", 1);
    save("House 8", 1);
    reveal();
    list_.swipe(1);
    EXPECT_EQ(list_.swipedRow(), 1);
    list_.myTableView.choose(1);
    EXPECT_EQ(list_.swipedRow(), -1) << "the first touch only closes it";
    EXPECT_TRUE(services_.asked.empty());
    list_.swipe(0);
    list_.pressDelete(0);
    EXPECT_EQ(list_.swipedRow(), -1);
    EXPECT_EQ(names(), Names{"House 8"});
    list_.swipe(7);
    EXPECT_EQ(list_.swipedRow(), -1);
}

TEST_F(RecordListTest, TheDeleteKeyDeletesTheRowAtTheKeyboardAndTheNextOneTakesItsPlace) {
    for (const char* project : {"1", "2", "3"}) save(project, 1);
    reveal();
    EXPECT_TRUE(list_.myTableView.pressKey(Qt::Key_Delete, Qt::NoModifier, false, 500));
    EXPECT_EQ(names(), (Names{"1", "2", "3"})) << "at no row yet";
    list_.myTableView.setCurrentRow(1);
    list_.myTableView.pressKey(Qt::Key_Delete, Qt::NoModifier, false, 500);
    EXPECT_EQ(names(), (Names{"1", "3"}));
    EXPECT_EQ(list_.myTableView.currentRow(), 1);
    list_.myTableView.pressKey(Qt::Key_Delete, Qt::NoModifier, false, 500);
    EXPECT_EQ(list_.myTableView.currentRow(), 0);
}

TEST_F(RecordListTest, TheMenuOfARowDeletesIt) {
    save("House 7", 1);
    reveal();
    EXPECT_EQ(list_.myTableView.menuEntries(),
              (QStringList{QStringLiteral("Copy this row"), QStringLiteral("Delete")}));
    list_.myTableView.openMenu(0);
    list_.myTableView.chooseEntry(1);
    EXPECT_EQ(names(), Names{});
    EXPECT_EQ(list_.myTableView.menuRow(), -1);
}

TEST_F(RecordListTest, AnyProjectNameIsSaidInALineOfItsOwnDirection) {
    save(std::string(100'000, 'x'), 1);
    save("\n", 1);
    reveal();
    list_.commitDelete(0);
    EXPECT_EQ(notice(), "\u2068" + std::string(30, 'x') + "…\u2069 was deleted");
    services_.notice.clear();
    list_.commitDelete(0);
    EXPECT_EQ(notice(), "\u20682015-03-02 14:05:33\u2069 was deleted");
}

}  // namespace
}  // namespace kestrix::storage
