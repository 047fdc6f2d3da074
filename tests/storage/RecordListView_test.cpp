// The list of test records as the right side bar draws it: by mouse, fingers, keys and screen reader.
#include <QtTest/QTest>

#include "storage/RightSideBarViewController.h"
#include "storage/Selection.h"
#include "tests/storage/StorageFixture.h"
#include "tests/support/WindowWalks.h"
#include "ui/ScreenNotifications.h"

namespace kestrix::storage {
namespace {

using ui::ScreenId;

class RecordListView : public testing::WindowWalks {
  protected:
    void SetUp() override { options_.slideDuration = std::chrono::milliseconds(0); }
    void openList(int records) {
        start();
        dao_.emplace(app().services().documents);
        for (int number = 1; number <= records; ++number) {
            RecordData record = testRecord();
            record.projectName = "House " + std::to_string(number);
            fileMeasurements(*dao_, record, {});
        }
        showList();
    }
    void showList() {
        app().screens().registerScreen(
            ScreenId::RecordList,
            [this] {
                return std::make_unique<RightSideBarViewController>(ScreenId::RecordList, app().services());
            },
            QUrl(QStringLiteral("qrc:/qt/qml/Kestrix/Storage/RightSideBarView.qml")));
        open();
        app().screens().present(ScreenId::RecordList, false);
        platform::NotificationCenter::defaultCenter().post({ui::NSRecordData});
        settle();
    }
    RightSideBarViewController& list() {
        for (int screen = app().screens().count() - 1; screen > 0; --screen) app().screens().dismiss(false);
        return dynamic_cast<RightSideBarViewController&>(*app().screens().topmost());
    }
    QQuickItem& row(int number) { return item(QStringLiteral("recordRow%1").arg(number)); }
    QString cell(int number, const char* column) {
        return testing::findItem(row(number), QLatin1String(column))->property("text").toString();
    }
    void swipe(int number, int by) {
        const QPoint from = pointIn(row(number), {0.8, 0.5});
        QTest::touchEvent(&window(), touchScreen()).press(0, from);
        constexpr int kSteps = 10;
        for (int step = 1; step <= kSteps; ++step)
            QTest::touchEvent(&window(), touchScreen()).move(0, from + QPoint(by * step / kSteps, 0));
        QTest::touchEvent(&window(), touchScreen()).release(0, from + QPoint(by, 0));
        settle();
    }
    std::optional<ServiceDao> dao_;
};

TEST_F(RecordListView, StandsBesideTheCoveredPart) {
    openList(3);
    EXPECT_EQ(placeOf("lblHistory"), QRectF(163, 0, 320, 44));
    EXPECT_EQ(placeOf("myTableView"), QRectF(50, 44, 270, 524));
    EXPECT_EQ(placeOf(row(1)), QRectF(50, 94, 270, 50));
    const auto place = [this](const char* name) {
        return placeOf(*testing::findItem(row(0), QLatin1String(name))).translated(-50, -44);
    };
    EXPECT_EQ(place("column1"), QRectF(0, 0, 130, 22));
    EXPECT_EQ(place("column2"), QRectF(130, 0, 130, 22));
    EXPECT_EQ(place("column3"), QRectF(0, 20, 130, 28));
    EXPECT_EQ(place("column4"), QRectF(130, 20, 130, 28));
    EXPECT_EQ(cell(0, "column1"), QStringLiteral("House 1"));
    EXPECT_EQ(cell(0, "column2"), QStringLiteral("samples:  3"));
    EXPECT_EQ(cell(0, "column3"), QStringLiteral("2024-06-03 "));
    EXPECT_EQ(cell(0, "column4"), QStringLiteral("09:08:07"));
}

TEST_F(RecordListView, IsGoodToReadHearAndReachInAllItsStates) {
    openList(30);
    EXPECT_EQ(testing::inLines(allProblems()), "");
    list().swipe(1);
    settle();
    EXPECT_EQ(testing::inLines(allProblems()), "") << "swiped";
    list().commitDelete(1);
    app().notice().clear();
    settle();
    EXPECT_EQ(testing::inLines(allProblems()), "") << "deleted";
}

TEST_F(RecordListView, AnEmptyOneSaysWhatItIs) {
    openList(0);
    EXPECT_TRUE(isShown("myTableViewEmptyText"));
    EXPECT_EQ(testing::inLines(allProblems()), "");
}

TEST_F(RecordListView, ARowIsChosenByMouseFingerKeyAndScreenReader) {
    openList(5);
    const auto expectChosen = [this](std::int64_t id) {
        settle();
        EXPECT_EQ(selectedRecordId, id);
        EXPECT_EQ(app().screens().topmost()->id(), ScreenId::History);
        list();
        settle();
    };
    QTest::mouseClick(&window(), Qt::LeftButton, {}, pointIn(row(0)));
    expectChosen(1);
    QTest::touchEvent(&window(), touchScreen()).press(0, pointIn(row(1)));
    QTest::touchEvent(&window(), touchScreen()).release(0, pointIn(row(1)));
    expectChosen(2);
    item("myTableView").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_End);
    pressKey(Qt::Key_Return);
    expectChosen(5);
    pressByScreenReader("recordRow2");
    expectChosen(3);
}

TEST_F(RecordListView, ASwipeUncoversAButtonThatDeletes) {
    openList(3);
    swipe(1, -120);
    EXPECT_EQ(list().swipedRow(), 1);
    EXPECT_EQ(app().screens().count(), 1) << "a swipe is no choice";
    EXPECT_EQ(placeOf("recordDelete1"), QRectF(240, 94, 80, 50));
    tap("recordDelete1");
    settle();
    EXPECT_EQ(cell(1, "column1"), QStringLiteral("House 3"));
    EXPECT_EQ(dao_->findRecordFormCount(), 2);
}

TEST_F(RecordListView, AShortSwipeAndOneToTheRightUncoverNothing) {
    openList(3);
    swipe(1, -30);
    EXPECT_EQ(list().swipedRow(), -1);
    swipe(1, 120);
    EXPECT_EQ(list().swipedRow(), -1);
    swipe(1, -120);
    swipe(1, 120);
    EXPECT_EQ(list().swipedRow(), -1) << "swiped back";
    EXPECT_EQ(dao_->findRecordFormCount(), 3);
}

TEST_F(RecordListView, AFingerThatMovesUpScrollsAndDeletesNothing) {
    openList(100);
    const QPoint from = pointIn(row(8));
    QTest::touchEvent(&window(), touchScreen()).press(0, from);
    for (int step = 1; step <= 10; ++step)
        QTest::touchEvent(&window(), touchScreen()).move(0, from - QPoint(0, 20 * step));
    QTest::touchEvent(&window(), touchScreen()).release(0, from - QPoint(0, 200));
    settle();
    EXPECT_GT(item("myTableView").property("contentY").toDouble(), 100);
    EXPECT_EQ(list().swipedRow(), -1);
    EXPECT_EQ(app().screens().count(), 1);
}

TEST_F(RecordListView, EveryRowIsSeenAfterOneWasDeleted) {
    openList(40);
    list().commitDelete(1);
    app().notice().clear();
    settle();
    QQuickItem& view = item("myTableView");
    for (double y = 0; y <= 1400; y += 200) {
        view.setProperty("contentY", y);
        settle();
        for (int number = 0; number < list().array.count(); ++number) {
            QQuickItem* made = nullptr;  // none: it is out of sight
            QMetaObject::invokeMethod(&view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, made),
                                      Q_ARG(int, number));
            if (made == nullptr) continue;
            EXPECT_EQ(made->opacity(), 1) << number << " at " << y;
        }
    }
}

TEST_F(RecordListView, ARowIsDeletedByKeyAndFromItsMenuAndPutBack) {
    openList(3);
    item("myTableView").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Home);
    pressKey(Qt::Key_Delete);
    settle();
    EXPECT_EQ(cell(0, "column1"), QStringLiteral("House 2"));
    EXPECT_FALSE(isShown("recordFoot")) << "the notice offers the same";
    app().notice().clear();
    settle();
    EXPECT_EQ(text("lblDeleted"), QStringLiteral("Deleted: \u2068House 1\u2069"));
    click("btnPutBack");
    settle();
    EXPECT_EQ(cell(0, "column1"), QStringLiteral("House 1"));
    EXPECT_FALSE(isShown("recordFoot"));
    app().notice().clear();
    QTest::mouseClick(&window(), Qt::RightButton, {}, pointIn(row(2)));
    settle();
    click("myTableViewDeleteRow");
    settle();
    EXPECT_EQ(list().array.count(), 2);
    pressByScreenReader("noticeAction");
    settle();
    EXPECT_EQ(list().array.count(), 3);
}

TEST_F(RecordListView, LongAndStrangeTextsAreCutAndOverlapNothing) {
    start();
    dao_.emplace(app().services().documents);
    RecordData record;
    record.projectName = std::string(100'000, 'W');
    record.endTime = "a\nb\nc שלום \U0001F477" + std::string(300, 'x');
    record.dates = std::string(300, '8');
    record.samples = 2147483647;
    fileMeasurements(*dao_, record, {});
    showList();
    for (const char* name : {"column1", "column2", "column3", "column4"}) {
        QQuickItem& one = *testing::findItem(row(0), QLatin1String(name));
        const QRectF painted = testing::paintedRect(one);
        EXPECT_LE(painted.width(), 102.5) << name;
        EXPECT_LE(painted.height(), one.height()) << name;
    }
    record.projectName = std::string(300, 'W');  // what of a longer one is shown ends in dots
    fileMeasurements(*dao_, record, {});
    list().commitDelete(0);
    list().AddDataToTable();
    app().notice().clear();
    settle();
    EXPECT_EQ(testing::inLines(allProblems()), "");
}

}  // namespace
}  // namespace kestrix::storage
