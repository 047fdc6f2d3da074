// The save form without its view.
#include "storage/SaveDataViewController.h"

#include <gtest/gtest.h>

#include "platform/NotificationCenter.h"
#include "storage/Selection.h"
#include "storage/TestRecords.h"
#include "tests/storage/StorageFixture.h"
#include "tests/support/TestServices.h"
#include "ui/ScreenNotifications.h"
#include "ui/SideBarContainer.h"

namespace kestrix::storage {
namespace {

using Call = testing::FailingVfs::Call;
using Strings = std::vector<std::string>;

class SaveDataTest : public ::testing::Test {
  protected:
    SaveDataTest() {
        vfs_.skipSyncs();
        dao_.emplace(services_.documents);
        dao_->createTable();
    }
    ~SaveDataTest() override { lastDataIdOfEarlierSessions = 0; }

    void record(int measurements, const std::string& time = "2015-03-02 14:05:33") {
        for (int number = 1; number <= measurements; ++number) {
            MeasureData measure = measurement(number);
            measure.dateTime = time;
            dao_->addMeasureForm(measure);
        }
    }
    // What is recorded from now on is of this session.
    void beginSession() { lastDataIdOfEarlierSessions = dao_->findMeasureForm(false).back().dataId; }
    SaveDataViewController& open() {
        form_.emplace(ui::ScreenId::SaveData, services_.services());
        form_->loadView();
        return *form_;
    }
    void expectFormStays(const std::string& reason) {
        EXPECT_TRUE(services_.alerts.isShown());
        EXPECT_EQ(services_.alerts.title(), QStringLiteral("Tips"));
        EXPECT_EQ(services_.alerts.text().toStdString(),
                  "The test record was not saved: " + reason +
                      ".\n\nIts measurements are kept, and none was filed.");
        EXPECT_EQ(services_.asked, Strings{});
        EXPECT_EQ(posted_, Strings{"NSHomeBackBg"}) << "the list keeps its rows";
    }

    testing::FailingVfs vfs_;
    testing::TestServices services_;
    std::string path_ = services_.documents.filePath(QStringLiteral("kestrix.sqlite")).toStdString();
    std::optional<ServiceDao> dao_;
    std::optional<SaveDataViewController> form_;
    Strings posted_;
    platform::NotificationCenter::Subscription clearings_ =
        platform::NotificationCenter::defaultCenter().addObserver(
            ui::NSClearTable,
            [this](const platform::Notification&) { posted_.emplace_back("NSClearTable"); });
    platform::NotificationCenter::Subscription slides_ =
        platform::NotificationCenter::defaultCenter().addObserver(
            ui::NSHomeBackBg,
            [this](const platform::Notification&) { posted_.emplace_back("NSHomeBackBg"); });
};

TEST_F(SaveDataTest, AfterALockHasGoneTheNextAttemptSaves) {
    record(2);
    SaveDataViewController& form = open();
    Connection other(path_);
    other.run("BEGIN EXCLUSIVE");
    form.dao->setPatience(std::chrono::milliseconds(0));
    testing::expectWarning("数据操作失败");
    form.pressSaveBack();
    ASSERT_TRUE(services_.alerts.isShown());
    services_.alerts.cancel();
    EXPECT_EQ(form.rows.count(), 2) << "it shows what it showed";
    other.run("ROLLBACK");
    form.pressSaveBack();
    EXPECT_FALSE(services_.alerts.isShown()) << services_.alerts.text().toStdString();
    EXPECT_EQ(dao_->findMeasureofId(1).size(), 2U);
}

TEST_F(SaveDataTest, ComesWithHowManyThereAreAndWhenTheyBegan) {
    record(1);
    record(2, "2015-03-02 15:00:00");
    SaveDataViewController& form = open();
    EXPECT_EQ(form.number, 3);
    EXPECT_EQ(form.sample.text(), QStringLiteral("3"));
    EXPECT_EQ(form.startTime.text(), QStringLiteral("2015-03-02 14:05:33"));
    EXPECT_EQ(form.rows.count(), 3);
    EXPECT_TRUE(form.btnEarlier.hidden());
    EXPECT_FALSE(form.isClosable());
}

TEST_F(SaveDataTest, HintsAreNoValues) {
    record(1);
    SaveDataViewController& form = open();
    std::vector<std::pair<QString, QString>> shown;
    for (const ui::TextField* field :
         {&form.projectName, &form.company, &form.address, &form.operators, &form.serialNumber})
        shown.emplace_back(field->placeholder(), field->text());
    EXPECT_EQ(shown, (std::vector<std::pair<QString, QString>>{
                         {"project", ""}, {"Zorvik", ""}, {"Lakeford", ""}, {"Brenn", ""}, {"12", ""}}));
}

TEST_F(SaveDataTest, AMissingTimeOfTheFirstOneIsNow) {
    record(1, "");
    EXPECT_EQ(open().startTimes, "2024-06-03 00:00:00");
}

TEST_F(SaveDataTest, AllFieldsEmptyAreStoredAsBlankAndDashes) {
    record(2);
    open().pressSaveBack();
    const RecordData saved = dao_->findRecordForm().at(0);
    EXPECT_EQ(saved.projectName, " ");
    for (const std::string& text : {saved.company, saved.operators, saved.addres, saved.serial})
        EXPECT_EQ(text, "---");
    for (const MeasureData& measure : dao_->findMeasureofId(saved.recordId))
        EXPECT_EQ(measure.recordName, " ");
    EXPECT_TRUE(dao_->findMeasureForm(false).empty()) << "they no longer count as unsaved";
}

TEST_F(SaveDataTest, AStartTimeIsCutIntoDateWithItsBlankAndTime) {
    record(1);
    open().pressSaveBack();
    const RecordData saved = dao_->findRecordForm().at(0);
    EXPECT_EQ(saved.startTime, "2015-03-02 14:05:33");
    EXPECT_EQ(saved.endTime, "2015-03-02 ");
    EXPECT_EQ(saved.dates, "14:05:33");
}

TEST_F(SaveDataTest, ThreeUnsavedOnesGiveThreeSamplesAndThreeUpdatesInTheirOrder) {
    record(3);
    StatementTrace trace;
    open().pressSaveBack();
    Strings updates;
    for (const std::string& text : trace.take()) {
        if (text.starts_with("update")) updates.push_back(text);
    }
    EXPECT_EQ(updates, (Strings{"update measurefrom set recordName=' ',recordId='1' WHERE dataId = '1'",
                                "update measurefrom set recordName=' ',recordId='1' WHERE dataId = '2'",
                                "update measurefrom set recordName=' ',recordId='1' WHERE dataId = '3'"}));
    EXPECT_EQ(dao_->findRecordForm().at(0).samples, 3);
}

TEST_F(SaveDataTest, TwoRecordsUnderOneProjectNameKeepTheirMeasurementsApart) {
    for (const int measurements : {2, 1}) {
        record(measurements);
        open().projectName.setText(QStringLiteral("House 7"));
        form_->pressSaveBack();
    }
    EXPECT_EQ(dao_->findMeasureofId(1).size(), 2U);
    EXPECT_EQ(dao_->findMeasureofId(2).size(), 1U);
    EXPECT_EQ(dao_->findMeasureofId(2).at(0).recordName, "House 7");
}

TEST_F(SaveDataTest, WhatIsTypedIsStoredAsItIs) {
    record(1);
    SaveDataViewController& form = open();
    const QString odd = QStringLiteral("O'Neill \"& Sons\"; --\U0001F477\U0001F3FD שלום");
    form.projectName.setText(odd);
    form.company.setText(odd);
    form.address.setText(QString(100'000, QChar(u'x')));
    form.operators.setText(QStringLiteral("Ann"));
    form.serialNumber.setText(QStringLiteral("7"));
    form.pressSaveBack();
    const RecordData saved = dao_->findRecordForm().at(0);
    EXPECT_EQ(saved.projectName, odd.toStdString());
    EXPECT_EQ(saved.company, odd.toStdString());
    EXPECT_EQ(saved.addres, std::string(100'000, 'x'));
    EXPECT_EQ(saved.operators, "Ann");
    EXPECT_EQ(saved.serial, "7");
}

TEST_F(SaveDataTest, ASaveTellsTheLiveScreenAndCloses) {
    record(1);
    ui::SideBarContainer::sideBarDirection = ui::SideBarContainer::kRight;
    open().pressSaveBack();
    EXPECT_EQ(ui::SideBarContainer::sideBarDirection, ui::SideBarContainer::kClosed);
    EXPECT_EQ(posted_, (Strings{"NSHomeBackBg", "NSClearTable"}));
    EXPECT_EQ(services_.asked, Strings{"dismiss animated"});
    form_->pressSaveBack();  // while it slides away
    EXPECT_FALSE(services_.alerts.isShown());
    EXPECT_EQ(dao_->findRecordForm().size(), 1U);
    EXPECT_EQ(services_.asked.size(), 1U);
}

TEST_F(SaveDataTest, EscapeAndBackDoNothing) {
    record(1);
    SaveDataViewController& form = open();
    for (const int key : {Qt::Key_Escape, Qt::Key_Back})
        EXPECT_TRUE(form.pressKey(key, Qt::NoModifier, false));
    EXPECT_EQ(services_.asked, Strings{});
    EXPECT_TRUE(form.btnBack.hidden());
}

TEST_F(SaveDataTest, WithNothingUnsavedTheLabelsStayEmptyAndARecordWithoutTimesIsWritten) {
    SaveDataViewController& form = open();
    EXPECT_EQ(form.sample.text(), QString());
    EXPECT_EQ(form.startTime.text(), QString());
    EXPECT_EQ(form.projectName.placeholder(), QString());
    EXPECT_FALSE(form.filed.emptyText().isEmpty());
    form.pressSaveBack();
    const RecordData saved = dao_->findRecordForm().at(0);
    EXPECT_EQ(saved.samples, 0);
    for (const std::string& text : {saved.startTime, saved.endTime, saved.dates}) EXPECT_EQ(text, "(null)");
}

TEST_F(SaveDataTest, WhatCameWhileTheFormWasShownStaysUnsaved) {
    record(2);
    open();
    record(1);
    form_->pressSaveBack();
    EXPECT_EQ(dao_->findRecordForm().at(0).samples, 2);
    EXPECT_EQ(dao_->findMeasureForm(false).size(), 1U);
}

TEST_F(SaveDataTest, AFailedSaveKeepsTheFormAndSaysWhy) {
    record(2);
    SaveDataViewController& form = open();
    form.projectName.setText(QStringLiteral("House 7"));
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    expectWarnings(kStatementFailed, 1);
    form.pressSaveBack();
    vfs_.heal();
    expectFormStays("the disk is full (database or disk is full)");
    EXPECT_EQ(dao_->findRecordFormCount(), 0);
    EXPECT_EQ(dao_->findMeasureForm(false).size(), 2U);
    services_.alerts.answer(1);
    EXPECT_EQ(form.projectName.text(), QStringLiteral("House 7"));
    form.pressSaveBack();
    EXPECT_EQ(services_.asked, Strings{"dismiss animated"});
    EXPECT_EQ(dao_->findRecordForm().at(0).samples, 2);
}

TEST_F(SaveDataTest, WhoCannotSaveAtAllGetsBackToTheLiveScreenWithoutLosingAnything) {
    record(2);
    open();
    vfs_.fail(Call::Write, "", SQLITE_FULL);
    expectWarnings(kStatementFailed, 1);
    form_->pressSaveBack();
    services_.alerts.answer(0);
    vfs_.heal();
    EXPECT_EQ(services_.asked, Strings{"dismiss animated"});
    EXPECT_EQ(posted_, Strings{"NSHomeBackBg"});
    EXPECT_EQ(dao_->findMeasureForm(false).size(), 2U);
}

TEST_F(SaveDataTest, OneThatSomebodyFiledMeanwhileIsShownGoneBeforeTheNextAttempt) {
    record(3);
    open();
    ASSERT_TRUE(fileMeasurements(*dao_, testRecord(), {dao_->findMeasureForm(false).at(1)}).done);
    form_->pressSaveBack();
    expectFormStays("a measurement was saved elsewhere or deleted meanwhile");
    EXPECT_EQ(form_->number, 2);
    EXPECT_EQ(form_->rows.count(), 2);
    services_.alerts.answer(1);
    form_->pressSaveBack();
    EXPECT_EQ(dao_->findMeasureofId(1).size(), 1U);
    EXPECT_EQ(dao_->findMeasureofId(2).size(), 2U);
}

TEST_F(SaveDataTest, MeasurementsThatCannotBeReadAreNotSavedUnseen) {
    record(2);
    Connection other(path_);
    other.run("BEGIN EXCLUSIVE");
    open();
    other.run("ROLLBACK");
    const std::string reason = "another program holds the database (database is locked)";
    EXPECT_EQ(services_.notice.text().toStdString(), "The measurements could not be read: " + reason);
    form_->pressSaveBack();
    expectFormStays(reason);
    EXPECT_EQ(dao_->findRecordFormCount(), 0);
    EXPECT_EQ(form_->number, 2) << "they can be seen now";
    services_.alerts.answer(1);
    form_->pressSaveBack();
    EXPECT_EQ(dao_->findRecordForm().at(0).samples, 2);
}

TEST_F(SaveDataTest, ThoseOfEarlierSessionsAreMarkedUnderTheirDate) {
    record(1, "2015-03-01 09:00:00");
    beginSession();
    record(1);
    const SaveDataViewController& form = open();
    EXPECT_EQ(form.rows.at(0).group, QStringLiteral("Earlier session, 2015-03-01"));
    EXPECT_EQ(form.rows.at(0).mark, QStringLiteral("Earlier"));
    EXPECT_EQ(form.rows.at(1).group, QStringLiteral("This session"));
    EXPECT_EQ(form.rows.at(1).mark, QString());
    EXPECT_FALSE(form.btnEarlier.hidden());
}

TEST_F(SaveDataTest, OneOfAnEarlierSessionThatIsLeftOutStaysUnsaved) {
    record(2, "2015-03-01 09:00:00");
    beginSession();
    record(1);
    SaveDataViewController& form = open();
    form.filed.choose(0);
    EXPECT_EQ(form.rows.at(0).mark, QStringLiteral("Left out"));
    EXPECT_TRUE(form.rows.at(0).struck);
    EXPECT_EQ(form.sample.text(), QStringLiteral("2"));
    form.pressSaveBack();
    EXPECT_EQ(dao_->findRecordForm().at(0).samples, 2);
    EXPECT_EQ(dao_->findMeasureofId(1).size(), 2U);
    ASSERT_EQ(dao_->findMeasureForm(false).size(), 1U);
    EXPECT_EQ(dao_->findMeasureForm(false).at(0).dataId, 1);
}

TEST_F(SaveDataTest, AllOfThemAreLeftOutTogetherAndTakenInAgain) {
    record(2, "2015-03-01 09:00:00");
    beginSession();
    record(1);
    SaveDataViewController& form = open();
    form.filed.choose(1);
    form.btnEarlier.press();
    EXPECT_EQ(form.number, 1);
    EXPECT_EQ(form.startTime.text(), QStringLiteral("2015-03-02 14:05:33"));
    form.btnEarlier.press();
    EXPECT_EQ(form.number, 3);
    EXPECT_EQ(form.startTime.text(), QStringLiteral("2015-03-01 09:00:00"));
    form.btnEarlier.press();
    form.pressSaveBack();
    EXPECT_EQ(dao_->findMeasureForm(false).size(), 2U);
    EXPECT_EQ(dao_->findRecordForm().at(0).startTime, "2015-03-02 14:05:33");
}

TEST_F(SaveDataTest, OneOfThisSessionCannotBeLeftOut) {
    record(1, "2015-03-01 09:00:00");
    beginSession();
    record(1);
    SaveDataViewController& form = open();
    form.filed.choose(1);
    EXPECT_EQ(form.number, 2);
    EXPECT_EQ(services_.notice.text(),
              QStringLiteral("Only measurements of earlier sessions can be left out"));
}

TEST_F(SaveDataTest, TheReturnKeyEndsEditingAndGoesOnToTheNextFieldAndToSave) {
    record(1);
    SaveDataViewController& form = open();
    Strings heard;
    const auto listen = [&heard](ui::Control& control) {
        QObject::connect(&control, &ui::Control::keyboardAsked, &control,
                         [&heard, &control] { heard.push_back(control.objectName().toStdString()); });
    };
    for (ui::Control* control : std::initializer_list<ui::Control*>{
             &form.company, &form.address, &form.operators, &form.serialNumber, &form.btnSave})
        listen(*control);
    for (ui::TextField* field :
         {&form.projectName, &form.company, &form.address, &form.operators, &form.serialNumber})
        field->pressReturn();
    EXPECT_EQ(heard, (Strings{"company", "address", "operators", "serialNumber", "btnSave"}));
    EXPECT_TRUE(form.textFieldShouldReturn(form.company));
}

}  // namespace
}  // namespace kestrix::storage
