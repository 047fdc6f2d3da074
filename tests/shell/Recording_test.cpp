// Record, the session list, and the other buttons: real presses on the window.
#include <QAccessible>
#include <QtTest/QTest>

#include <algorithm>
#include <set>
#include <vector>

#include "tests/shell/Scenarios.h"
#include "tests/shell/TestScreen.h"
#include "tests/support/EventLoop.h"
#include "tests/support/WindowFixture.h"
#include "ui/SideBarContainer.h"

namespace kestrix::shell {
namespace {

// The frame around the live screen; keeps what it is asked for.
class SideBarDouble final : public ui::SideBarContainer {
  public:
    SideBarDouble() { becomeShared(); }
    void showSideBarControllerWithDirection(std::int32_t direction) override { shown = direction; }
    std::int32_t shown = -1;
};

class Recording : public testing::WindowFixture {
  protected:
    void openWithReading(QSize size = kSmall) {
        start();
        TestScreen::registerAs(ui::ScreenId::SaveData, app().screens(), log_);
        TestScreen::registerAs(ui::ScreenId::BluetoothConnectionHelp, app().screens(), helpLog_);
        open(size);
        showReading(kInsulation);
    }
    int rows() { return screen().dataList()->count(); }
    double scrolled() { return item("tableView").property("contentY").toDouble(); }
    double lastScroll() {
        QQuickItem& list = item("tableView");
        return list.property("contentHeight").toDouble() + list.property("bottomMargin").toDouble() -
               list.height();
    }
    void record(int times) {
        for (int i = 0; i < times; ++i) click("btnRecord");
        settle();
    }
    std::string column(int row, int number) {
        QQuickItem& cell = item(QStringLiteral("sessionRow%1").arg(row));
        return testing::findItem(cell, QStringLiteral("column%1").arg(number))
            ->property("text")
            .toString()
            .toStdString();
    }
    void keyDown(bool repeated) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), repeated);
        QCoreApplication::sendEvent(&window(), &event);
    }

    SideBarDouble sideBars_;
    TestScreen::Log log_ = std::make_shared<std::string>();      // of the screen that saves
    TestScreen::Log helpLog_ = std::make_shared<std::string>();  // of the screen that helps
};

TEST_F(Recording, TheMouseRecordsWhenItGoesDown) {
    openWithReading();
    pressMouse("btnRecord");
    EXPECT_EQ(rows(), 1);
    releaseMouse(centreOf("btnRecord"));
    EXPECT_EQ(rows(), 1);
}

TEST_F(Recording, AFingerRecordsWhenItLands) {
    openWithReading();
    const QPoint at = centreOf("btnRecord");
    QTest::touchEvent(&window(), touchScreen()).press(0, at);
    EXPECT_EQ(rows(), 1);
    QTest::touchEvent(&window(), touchScreen()).release(0, at);
    EXPECT_EQ(rows(), 1);
}

TEST_F(Recording, EveryPressRecords) {
    openWithReading();
    record(3);
    tap("btnRecord");
    tap("btnRecord");
    EXPECT_EQ(rows(), 5);
}

TEST_F(Recording, APressBesideTheButtonDoesNotRecord) {
    openWithReading();
    const QPoint left = pointIn(item("btnRecord"), {-0.05, 0.5});
    QTest::mouseClick(&window(), Qt::LeftButton, {}, left);
    EXPECT_EQ(rows(), 0);
}

TEST_F(Recording, SpaceRecordsOnceHoweverLongItIsHeld) {
    openWithReading();
    keyDown(false);
    EXPECT_EQ(rows(), 1);
    keyDown(true);
    keyDown(true);
    EXPECT_EQ(rows(), 1);
}

TEST_F(Recording, TheFocusedRecordButtonTakesSpaceAndEnterOnce) {
    openWithReading();
    item("btnRecord").forceActiveFocus(Qt::TabFocusReason);
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) pressKey(key);
    EXPECT_EQ(rows(), 3);
    keyDown(true);
    EXPECT_EQ(rows(), 3);
}

TEST_F(Recording, AScreenReaderRecords) {
    openWithReading();
    QAccessibleInterface* const button = QAccessible::queryAccessibleInterface(&item("btnRecord"));
    ASSERT_NE(button, nullptr);
    ASSERT_NE(button->actionInterface(), nullptr);
    ASSERT_TRUE(button->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(rows(), 1);
}

TEST_F(Recording, BeforeTheFirstReadingNothingIsRecorded) {
    open();
    tester().appear();
    settle();
    click("btnRecord");
    pressKey(Qt::Key_Space);
    EXPECT_EQ(rows(), 0);
}

TEST_F(Recording, AHeldRecordButtonLooksPressed) {
    openWithReading();
    const QRect where = pixelsOf(placeOf("btnRecord"));
    const QImage released = onDisplay().copy(where);
    pressMouse("btnRecord");
    settle();
    EXPECT_NE(onDisplay().copy(where), released);
    releaseMouse(centreOf("btnRecord"));
    settle();
    EXPECT_EQ(onDisplay().copy(where), released);
}

TEST_F(Recording, AToolbarButtonActsWhenItIsReleasedInside) {
    openWithReading();
    pressMouse("Leftbtn");
    EXPECT_EQ(sideBars_.shown, -1);
    releaseMouse(centreOf("Leftbtn"));
    EXPECT_EQ(sideBars_.shown, ui::SideBarContainer::kLeft);
    tap("Rightbtn");
    EXPECT_EQ(sideBars_.shown, ui::SideBarContainer::kRight);
}

TEST_F(Recording, APressThatSlidesOffAToolbarButtonDoesNothing) {
    openWithReading();
    for (const char* button : {"Leftbtn", "Rightbtn"}) {
        pressMouse(button);
        releaseMouse(centreOf("D1Value"));
        EXPECT_EQ(sideBars_.shown, -1) << button;
        const QPoint at = centreOf(button);
        QTest::touchEvent(&window(), touchScreen()).press(0, at);
        QTest::touchEvent(&window(), touchScreen()).move(0, centreOf("D1Value"));
        QTest::touchEvent(&window(), touchScreen()).release(0, centreOf("D1Value"));
        EXPECT_EQ(sideBars_.shown, -1) << button;
    }
}

TEST_F(Recording, WithARowTheRightButtonSaves) {
    openWithReading();
    record(1);
    click("Rightbtn");
    EXPECT_EQ(app().screens().count(), 1);
    EXPECT_EQ(*log_, "willAppear ");
    EXPECT_EQ(sideBars_.shown, -1);
}

TEST_F(Recording, HelpActsWhenTheFingerLands) {
    openWithReading();
    tester().leave();
    settle();
    pressMouse("btnHelp");
    EXPECT_EQ(*helpLog_, "willAppear ");
    releaseMouse(centreOf("btnHelp"));
    EXPECT_EQ(app().screens().count(), 1);
}

TEST_F(Recording, AFingerAFewPointsBesideHelpStillMeansIt) {
    openWithReading();
    tester().leave();
    settle();
    const QPoint above = pointIn(item("btnHelp"), {0.5, -0.3});
    QTest::touchEvent(&window(), touchScreen()).press(0, above);
    EXPECT_EQ(app().screens().count(), 1);
    QTest::touchEvent(&window(), touchScreen()).release(0, above);
}

TEST_F(Recording, AHiddenHelpButtonIsNotPressed) {
    openWithReading();
    click("btnHelp");
    EXPECT_EQ(app().screens().count(), 0);
}

TEST_F(Recording, ThreePressesGiveThreeRowsAsTheModelHasThem) {
    openWithReading();
    record(3);
    for (int row = 0; row < 3; ++row) {
        const live::SessionRow& model = screen().dataList()->row(row);
        EXPECT_EQ(column(row, 1), "S_" + std::to_string(row + 1));
        EXPECT_EQ(column(row, 2), "INSULATION");
        EXPECT_EQ(column(row, 3), model.Parameters);
        EXPECT_EQ(column(row, 4), "186.4MΩ,524V");
        EXPECT_EQ(column(row, 5), model.DateTime);
        EXPECT_EQ(column(row, 6), " ");
    }
    EXPECT_EQ(testing::findItem(item("tableView"), QStringLiteral("sessionRow3")), nullptr);
}

TEST_F(Recording, TheRowsStandUnderEachOtherAsHighAsTheModelSays) {
    openWithReading();
    record(2);
    tester().play(kRcdSixRows);
    record(1);
    tester().play(kEarth);
    record(1);
    double y = 231;
    for (int row = 0; row < 4; ++row) {
        const QRectF place = placeOf(item(QStringLiteral("sessionRow%1").arg(row)));
        EXPECT_EQ(place, QRectF(0, y, 320, screen().dataList()->height(row))) << row;
        y = place.bottom();
    }
    EXPECT_EQ(screen().dataList()->height(3), 20);
    EXPECT_GT(screen().dataList()->height(2), 100);
}

struct Column {
    double x;
    double width;
};
constexpr Column kColumns[] = {{0, 50}, {51, 44}, {96, 61}, {158, 60}, {219, 50}, {270, 50}};
constexpr double kLines[] = {50, 95, 157, 218, 269};

TEST_F(Recording, ARowHasItsColumnsAndLinesAtTheirPlaces) {
    openWithReading();
    record(2);
    for (const QSize size : {QSize(320, 568), QSize(960, 1706)}) {
        resize(size);
        QQuickItem& row = item("sessionRow1");
        const QRectF place = placeOf(row);
        for (int number = 1; number <= 6; ++number) {
            QQuickItem& cell = *testing::findItem(row, QStringLiteral("column%1").arg(number));
            const Column& column = kColumns[number - 1];
            EXPECT_EQ(placeOf(cell), QRectF(column.x, place.y(), column.width, place.height())) << number;
            EXPECT_EQ(cell.property("horizontalAlignment").toInt(), Qt::AlignHCenter);
            const auto font = cell.property("font").value<QFont>();
            EXPECT_EQ(font.family(), QStringLiteral("helvetica"));
            EXPECT_EQ(font.pixelSize(), 8);
        }
        std::vector<QRectF> wanted;
        for (const double x : kLines) wanted.emplace_back(x, place.y(), 1, place.height());
        wanted.emplace_back(0, place.y(), 320, 1);
        wanted.emplace_back(0, place.bottom() - 1, 320, 1);
        std::vector<QRectF> lines;
        for (QQuickItem* part : row.childItems()) {
            if (part->property("color").value<QColor>() == QColor(108, 108, 108))
                lines.push_back(placeOf(*part));
        }
        const auto leftThenTop = [](const QRectF& a, const QRectF& b) {
            return std::pair(a.width(), a.x() + a.y()) < std::pair(b.width(), b.x() + b.y());
        };
        std::sort(lines.begin(), lines.end(), leftThenTop);
        EXPECT_EQ(lines, wanted);
    }
}

// On the display itself, at a size that does not fit whole points.
TEST_F(Recording, AllLinesOfTheListAreEquallyThick) {
    openWithReading();
    record(2);
    for (const QSize size : {QSize(384, 682), QSize(517, 733), QSize(700, 1000)}) {
        resize(size);
        const QImage display = onDisplay();
        const QRect row = pixelsOf(placeOf("sessionRow0"));
        // Where no text stands: just below the row's upper line.
        const int y = row.top() + row.height() / 10;
        std::vector<int> widths;
        int width = 0;
        for (int x = row.left(); x < row.right(); ++x) {
            if (display.pixel(x, y) == qRgb(108, 108, 108)) {
                ++width;
            } else if (width > 0) {
                widths.push_back(width);
                width = 0;
            }
        }
        ASSERT_EQ(widths.size(), 5U) << size.width();
        EXPECT_EQ(std::set<int>(widths.begin(), widths.end()).size(), 1U) << size.width();
    }
}

TEST_F(Recording, NoTextOfACellIsCut) {
    openWithReading();
    for (const char* scenario : kAll) {
        tester().play(scenario);
        record(1);
    }
    resize({320, 2000});  // every row on the screen
    for (int row = 0; row < rows(); ++row) {
        for (int number = 1; number <= 6; ++number) {
            const QQuickItem& cell = *testing::findItem(item(QStringLiteral("sessionRow%1").arg(row)),
                                                        QStringLiteral("column%1").arg(number));
            EXPECT_LE(cell.property("paintedWidth").toDouble(), cell.width() + 0.01) << row << "/" << number;
            EXPECT_LE(cell.property("paintedHeight").toDouble(), cell.height() + 0.01)
                << row << "/" << number;
        }
    }
}

TEST_F(Recording, FromTheThirdRowOnTheLastOneStandsAboveTheBottomBar) {
    openWithReading({320, 480});
    record(30);
    EXPECT_NEAR(placeOf("sessionRow29").bottom(), placeOf("bottomBar").top(), 0.01);
    resize({384, 700});
    record(1);
    EXPECT_NEAR(placeOf("sessionRow30").bottom(), placeOf("bottomBar").top(), 0.01);
}

TEST_F(Recording, ALastRowThatIsTallerThanTheListEndsAtTheBottom) {
    openWithReading({320, 480});
    record(2);
    tester().play(kRcdSixRows);
    record(2);
    EXPECT_NEAR(placeOf("sessionRow3").bottom(), placeOf("bottomBar").top(), 0.01);
}

TEST_F(Recording, AFewRowsStandAtTheTop) {
    openWithReading();
    record(3);
    EXPECT_EQ(placeOf("sessionRow0").top(), 231);
}

TEST_F(Recording, AClearedListIsEmptyAndStartsAnew) {
    openWithReading();
    record(3);
    screen().pressClearTable();
    settle();
    EXPECT_EQ(testing::findItem(item("tableView"), QStringLiteral("sessionRow0")), nullptr);
    record(1);
    EXPECT_EQ(column(0, 1), "S_1");
    EXPECT_EQ(placeOf("sessionRow0").top(), 231);
}

TEST_F(Recording, KeysScrollTheListToBothEnds) {
    openWithReading();
    record(30);
    EXPECT_NEAR(scrolled(), lastScroll(), 0.01);
    item("tableView").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Down);
    EXPECT_NEAR(scrolled(), lastScroll(), 0.01);
    pressKey(Qt::Key_Up);
    EXPECT_NEAR(scrolled(), lastScroll() - 20, 0.01);
    pressKey(Qt::Key_Down);
    EXPECT_NEAR(scrolled(), lastScroll(), 0.01);
    pressKey(Qt::Key_PageUp);
    EXPECT_NEAR(scrolled(), lastScroll() - item("tableView").height(), 0.01);
    pressKey(Qt::Key_Home);
    EXPECT_EQ(scrolled(), 0);
    pressKey(Qt::Key_Up);
    EXPECT_EQ(scrolled(), 0);
    pressKey(Qt::Key_PageDown);
    EXPECT_EQ(scrolled(), item("tableView").height());
    pressKey(Qt::Key_End);
    EXPECT_NEAR(scrolled(), lastScroll(), 0.01);
    EXPECT_EQ(rows(), 30);
}

TEST_F(Recording, KeysLeaveAShortListWhereItIs) {
    openWithReading();
    record(2);
    item("tableView").forceActiveFocus(Qt::TabFocusReason);
    for (const int key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Up}) {
        pressKey(key);
        EXPECT_EQ(scrolled(), 0);
    }
}

TEST_F(Recording, AFingerScrollsTheList) {
    openWithReading();
    record(30);
    const QPoint from = centreOf("tableView");
    const double before = scrolled();
    QTest::touchEvent(&window(), touchScreen()).press(0, from);
    for (int step = 1; step <= 10; ++step)
        QTest::touchEvent(&window(), touchScreen()).move(0, from + QPoint(0, 10 * step));
    EXPECT_LT(scrolled(), before - 50);
    QTest::touchEvent(&window(), touchScreen()).release(0, from + QPoint(0, 100));
    EXPECT_GE(scrolled(), 0);
    EXPECT_EQ(rows(), 30);
}

TEST_F(Recording, TheWheelScrollsTheList) {
    openWithReading();
    record(30);
    const double before = scrolled();
    const QPointF at = centreOf("tableView");
    QWheelEvent event(at, window().mapToGlobal(at), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&window(), &event);
    EXPECT_TRUE(testing::spinUntil([&] { return scrolled() < before - 20; }));
}

}  // namespace
}  // namespace kestrix::shell
