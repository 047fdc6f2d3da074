// The save form in the window: by mouse, fingers, keys and screen reader.
#include <QInputMethodEvent>
#include <QtTest/QTest>

#include "storage/SaveDataViewController.h"
#include "storage/Selection.h"
#include "tests/storage/StorageFixture.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::storage {
namespace {

using ui::ScreenId;

class SaveForm : public testing::WindowWalks {
  protected:
    void SetUp() override { options_.slideDuration = std::chrono::milliseconds(0); }
    void TearDown() override { lastDataIdOfEarlierSessions = 0; }
    // With measurements of an earlier session and of this one that are not saved.
    void openForm(int earlier, int ofThisSession, QSize size = kSmall) {
        start();
        dao_.emplace(app().services().documents);
        for (int number = 1; number <= earlier; ++number) dao_->addMeasureForm(measurement(number));
        lastDataIdOfEarlierSessions = dao_->lastOutcome().identity;
        for (int number = 1; number <= ofThisSession; ++number) dao_->addMeasureForm(measurement(number));
        open(size);
        app().screens().present(ScreenId::SaveData, false);
        settle();
    }
    SaveDataViewController& form() {
        return dynamic_cast<SaveDataViewController&>(*app().screens().topmost());
    }
    bool isOpen() { return app().screens().count() == 1; }
    void type(const char* text) {
        QInputMethodEvent event;
        event.setCommitString(QString::fromUtf8(text));
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    void tapRow(int row) {
        const QPoint at = pointIn(item(QStringLiteral("filedRow%1").arg(row)));
        QTest::touchEvent(&window(), touchScreen()).press(0, at);
        QTest::touchEvent(&window(), touchScreen()).release(0, at);
        settle();
    }
    // What stands above the rows, from top to bottom.
    std::vector<QString> groups() {
        std::map<double, QString> shown;
        for (QQuickItem* one : testing::itemsUnder(item("filed"))) {
            if (one->objectName() == QStringLiteral("tableGroup") && one->isVisible())
                shown[one->y()] = one->property("title").toString();
        }
        std::vector<QString> groups;
        for (const auto& [y, title] : shown) groups.push_back(title);
        return groups;
    }
    std::optional<ServiceDao> dao_;
};

TEST_F(SaveForm, IsFilledAndSavedWithoutAMouse) {
    openForm(0, 2);
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "btnSave");
    pressKey(Qt::Key_Tab);
    for (const char* field : {"projectName", "company", "address", "operators", "serialNumber"}) {
        EXPECT_EQ(focused(), field);
        type(field);
        pressKey(Qt::Key_Return);
    }
    EXPECT_EQ(focused(), "btnSave");
    EXPECT_TRUE(isOpen());
    pressKey(Qt::Key_Return);
    settle();
    EXPECT_FALSE(isOpen());
    const RecordData saved = dao_->findRecordForm().at(0);
    EXPECT_EQ(saved.projectName, "projectName");
    EXPECT_EQ(saved.company, "company");
    EXPECT_EQ(saved.addres, "address");
    EXPECT_EQ(saved.operators, "operators");
    EXPECT_EQ(saved.serial, "serialNumber");
    EXPECT_EQ(saved.samples, 2);
}

TEST_F(SaveForm, IsSavedByMouseFingerAndScreenReader) {
    openForm(0, 1);
    for (const int way : {0, 1, 2}) {
        if (way > 0) {
            dao_->addMeasureForm(measurement(1));
            app().screens().present(ScreenId::SaveData, false);
            settle();
        }
        if (way == 0) click("btnSave");
        if (way == 1) tap("btnSave");
        if (way == 2) pressByScreenReader("btnSave");
        settle();
        EXPECT_FALSE(isOpen()) << way;
        EXPECT_EQ(dao_->findRecordFormCount(), way + 1);
    }
}

TEST_F(SaveForm, EscapeAndBackDoNothingWhereverTheKeyboardIs) {
    openForm(1, 1);
    for (const char* at : {"saveDataView", "projectName", "btnSave", "btnEarlier", "filed"}) {
        item(at).forceActiveFocus(Qt::TabFocusReason);
        for (const int key : {Qt::Key_Escape, Qt::Key_Back}) pressKey(key);
        settle();
        EXPECT_TRUE(isOpen()) << at;
    }
    EXPECT_FALSE(isShown("btnBack"));
    EXPECT_EQ(dao_->findRecordFormCount(), 0);
}

TEST_F(SaveForm, MeasurementsOfEarlierSessionsStandApartUnderTheirDate) {
    openForm(2, 1);
    EXPECT_EQ(groups(), (std::vector<QString>{QStringLiteral("Earlier session, 2024-06-03"),
                                              QStringLiteral("This session")}));
    std::vector<MeasureData> others = form().measureArray;
    others[0].dateTime = "2024-05-01 10:00:00";
    form().setMeasurements(others);
    settle();
    EXPECT_EQ(groups(), (std::vector<QString>{QStringLiteral("Earlier session, 2024-05-01"),
                                              QStringLiteral("Earlier session, 2024-06-03"),
                                              QStringLiteral("This session")}));
}

TEST_F(SaveForm, WithoutEarlierOnesNothingOfThemIsShown) {
    openForm(0, 2);
    EXPECT_FALSE(isShown("btnEarlier"));
    EXPECT_FALSE(isShown("tableGroup"));
}

TEST_F(SaveForm, OneIsLeftOutByMouseFingerKeyAndScreenReader) {
    openForm(4, 1);
    QTest::mouseClick(&window(), Qt::LeftButton, {}, pointIn(item("filedRow0")));
    tapRow(1);
    item("filed").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Home);
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Return);
    pressByScreenReader("filedRow3");
    settle();
    for (int row = 0; row < 4; ++row) EXPECT_EQ(form().rows.at(row).mark, QStringLiteral("Left out")) << row;
    EXPECT_EQ(text("sample"), QStringLiteral("1"));
    tapRow(1);
    EXPECT_EQ(text("sample"), QStringLiteral("2"));
}

TEST_F(SaveForm, AllOfThemAreLeftOutByOneButton) {
    openForm(2, 1);
    tap("btnEarlier");
    settle();
    EXPECT_EQ(text("sample"), QStringLiteral("1"));
    click("btnSave");
    settle();
    EXPECT_EQ(dao_->findRecordForm().at(0).samples, 1);
    EXPECT_EQ(dao_->findMeasureForm(false).size(), 2U);
}

TEST_F(SaveForm, AFailedSaveIsSaidAndTheFormStays) {
    openForm(0, 1);
    dao_->DeleteMeasureFormData(1);
    click("btnSave");
    settle();
    EXPECT_TRUE(isShown("alert"));
    EXPECT_EQ(app().alerts().title(), QStringLiteral("Tips"));
    pressKey(Qt::Key_Return);
    settle();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(dao_->findRecordFormCount(), 0);
}

TEST_F(SaveForm, WhatIsTypedStaysInSightOverAKeyboardOnALowStage) {
    openForm(2, 30, QSize(320, 480));
    constexpr double kKeyboard = 300;
    item("saveDataView").setProperty("coveredByKeyboard", kKeyboard);
    for (const char* field : {"projectName", "company", "address", "operators", "serialNumber"}) {
        item(field).forceActiveFocus(Qt::TabFocusReason);
        settle();
        EXPECT_LE(placeOf(field).bottom(), 480 - kKeyboard) << field;
        EXPECT_GE(placeOf(field).top(), 45) << field;
    }
    EXPECT_LT(placeOf("btnSave").bottom(), 45) << "and Save can be reached";
    item("saveDataView").setProperty("coveredByKeyboard", 0);
    settle();
    EXPECT_EQ(item("saveForm").property("contentY").toDouble(), 0);
}

TEST_F(SaveForm, LongAndStrangeTextsBreakNoLayout) {
    openForm(1, 0);
    const QString odd = QStringLiteral("O'Neill \"\U0001F477\U0001F3FD\" שלום ");
    MeasureData strange = measurement(1);
    strange.dataName = strange.function = std::string(300, 'W');
    strange.parameters = odd.toStdString();
    strange.result = std::string(100'000, 'x');
    strange.dateTime = std::string(100, '8');
    std::vector<MeasureData> measurements = form().measureArray;
    measurements.push_back(strange);
    form().setMeasurements(measurements);
    form().projectName.setText(odd.repeated(4000));
    form().company.setText(odd);
    settle();
    for (const QQuickItem* shown : testing::shownTexts(item("filedRow1"))) {
        const auto* const cell = const_cast<QQuickItem*>(shown);
        EXPECT_LE(testing::paintedRect(*cell).width(), cell->width() + 0.5)
            << cell->objectName().toStdString();
        EXPECT_LE(testing::paintedRect(*cell).height(), cell->height() + 0.5)
            << cell->objectName().toStdString();
    }
    measurements.back().result.resize(300);  // what of a longer one is shown ends in dots
    form().setMeasurements(measurements);
    settle();
    EXPECT_EQ(testing::inLines(allProblems()), "");
}

}  // namespace
}  // namespace kestrix::storage
