// From the press of the record button to the deleted test record, as a user goes: by finger, and again by
// keys alone.
#include <QInputMethodEvent>
#include <QtTest/QTest>

#include "history/HistoryViewController.h"
#include "storage/ServiceDao.h"
#include "tests/shell/Scenarios.h"
#include "tests/support/EventLoop.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

class SavedRoad : public testing::WindowFixture {
  protected:
    void openAndRecordThree(const std::function<void()>& record) {
        options_.slideDuration = std::chrono::milliseconds(0);
        open();
        for (const char* scenario : {kEarth, kInsulation, kLoop}) {
            showReading(scenario);
            record();
        }
        settle();
        ASSERT_EQ(screen().dataList()->count(), 3);
    }
    void type(const QString& text) {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    void touch(const char* name) {
        tap(name);
        settle();
    }
    QString shown(const char* row, const char* part) {
        QQuickItem* const found = testing::findItem(item(row), QString::fromLatin1(part));
        return found != nullptr ? found->property("text").toString() : QStringLiteral("nothing");
    }
    bool topmostIs(ui::ScreenId id) {
        const ui::Screen* const top = app().screens().topmost();
        return top != nullptr && top->id() == id;
    }
    // A finger that goes to the left.
    void swipe(const char* name) {
        const QPoint from = pointIn(item(name), {0.8, 0.5});
        QTest::touchEvent(&window(), touchScreen()).press(0, from);
        for (int step = 1; step <= 10; ++step)
            QTest::touchEvent(&window(), touchScreen()).move(0, from - QPoint(10 * step, 0));
        QTest::touchEvent(&window(), touchScreen()).release(0, from - QPoint(100, 0));
        settle();
    }
    void expectThreeFiledUnder(const char* project) {
        storage::ServiceDao dao(app().documents());
        const auto records = dao.findRecordForm();
        ASSERT_EQ(records.size(), 1U);
        EXPECT_EQ(records.front().projectName, project);
        EXPECT_EQ(records.front().company, "---");
        EXPECT_EQ(records.front().samples, 3);
        EXPECT_EQ(records.front().endTime, "2026-03-04 ");
        EXPECT_EQ(records.front().dates, "05:06:07");
        const auto rows = dao.findMeasureofId(records.front().recordId);
        ASSERT_EQ(rows.size(), 3U);
        EXPECT_EQ(rows[0].function, "EARTH");
        EXPECT_EQ(rows[1].function, "INSULATION");
        for (const auto& row : rows) EXPECT_EQ(row.recordName, project);
        EXPECT_TRUE(dao.findMeasureForm(false).empty());
    }
};

TEST_F(SavedRoad, RecordThreeSaveListOpenOpenAMeasurementBackAndSwipeDelete) {
    openAndRecordThree([this] { touch("btnRecord"); });
    touch("Rightbtn");
    ASSERT_TRUE(topmostIs(ui::ScreenId::SaveData));
    EXPECT_EQ(text("sample"), QStringLiteral("3"));
    touch("projectName");
    type(QStringLiteral("Plant A"));
    touch("btnSave");
    EXPECT_EQ(app().screens().count(), 0);
    EXPECT_EQ(screen().dataList()->count(), 0) << "what is saved is no longer in the list of this session";
    expectThreeFiledUnder("Plant A");

    touch("Rightbtn");
    EXPECT_EQ(shown("recordRow0", "column1"), QStringLiteral("Plant A"));
    EXPECT_EQ(shown("recordRow0", "column2"), QStringLiteral("samples:  3"));
    touch("recordRow0");
    ASSERT_TRUE(topmostIs(ui::ScreenId::History));
    EXPECT_EQ(text("historyTitle"), QStringLiteral("Plant A"));
    EXPECT_EQ(shown("historyRow1", "column2"), QStringLiteral("INSULATION"));
    EXPECT_TRUE(shown("historyRow1", "column4").startsWith(QStringLiteral("186.4MΩ,")));

    touch("historyRow1");
    ASSERT_TRUE(topmostIs(ui::ScreenId::HistoryCell));
    pressKey(Qt::Key_Back);
    settle();
    touch("btnBack");
    EXPECT_EQ(app().screens().count(), 0);

    swipe("recordRow0");
    touch("recordDelete0");
    EXPECT_EQ(storage::ServiceDao(app().documents()).findMeasureForm(true).size(), 0U);
    touch("noticeAction");
    expectThreeFiledUnder("Plant A");
}

TEST_F(SavedRoad, ByKeysAlone) {
    openAndRecordThree([this] { pressKey(Qt::Key_Space); });
    // A list has the keyboard itself, or one of its rows.
    const auto isAt = [this](const std::string& name, const std::string& row) {
        return focused() == name || (!row.empty() && focused().rfind(row, 0) == 0);
    };
    const auto tabTo = [&](const std::string& name, const std::string& row = {}) {
        for (int stop = 0; stop < 20 && !isAt(name, row); ++stop) pressKey(Qt::Key_Tab);
        EXPECT_TRUE(isAt(name, row)) << focused();
    };
    tabTo("Rightbtn");
    pressKey(Qt::Key_Return);
    settle();
    ASSERT_TRUE(topmostIs(ui::ScreenId::SaveData));
    pressKey(Qt::Key_Escape);
    EXPECT_TRUE(topmostIs(ui::ScreenId::SaveData)) << "it is left by saving only";
    tabTo("projectName");
    type(QStringLiteral("Keys"));
    for (int field = 0; field < 5; ++field) pressKey(Qt::Key_Return);
    EXPECT_EQ(focused(), "btnSave");
    pressKey(Qt::Key_Return);
    settle();
    expectThreeFiledUnder("Keys");

    tabTo("Rightbtn");
    pressKey(Qt::Key_Return);
    settle();
    tabTo("myTableView", "recordRow");
    pressKey(Qt::Key_Home);
    pressKey(Qt::Key_Return);
    settle();
    ASSERT_TRUE(topmostIs(ui::ScreenId::History));
    tabTo("tableView", "historyRow");
    pressKey(Qt::Key_Home);
    pressKey(Qt::Key_Return);
    settle();
    ASSERT_TRUE(topmostIs(ui::ScreenId::HistoryCell));
    pressKey(Qt::Key_Escape);
    pressKey(Qt::Key_Escape);
    settle();
    EXPECT_EQ(app().screens().count(), 0);
    tabTo("myTableView", "recordRow");
    pressKey(Qt::Key_Delete);
    EXPECT_TRUE(storage::ServiceDao(app().documents()).findRecordForm().empty());
    pressKey(Qt::Key_Escape);
    settle();
    EXPECT_FALSE(app().viewController().sideBarShowing());
}

}  // namespace
}  // namespace kestrix::shell
