// The window itself: when it draws, and what it shows then.
#include "shell/MainWindow.h"

#include <QCoreApplication>
#include <QIcon>

#include "simulator/FrameEncoder.h"
#include "tests/shell/Scenarios.h"
#include "tests/support/EventLoop.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

class MainWindowTest : public testing::WindowFixture {
  protected:
    void sendEarth(std::uint16_t magnitude) {
        simulator::Display display;
        display.readings[0] = {.magnitude = magnitude};
        tester().send(simulator::encodeFrame(display));
    }
};

TEST_F(MainWindowTest, HasATitleASizeAndALeastSize) {
    start();
    MainWindow fresh(app());
    EXPECT_EQ(fresh.title(), QStringLiteral("Kestrix"));
    EXPECT_EQ(fresh.size(), MainWindow::kSize);
    EXPECT_EQ(fresh.minimumSize(), QSize(160, 240));
}

TEST_F(MainWindowTest, HasItsIconOnceItIsSeen) {
    open();
    EXPECT_TRUE(testing::spinUntil([this] { return !window().icon().pixmap(64).isNull(); }));
}

// Any warning in the log would fail this test.
TEST_F(MainWindowTest, LoadsEveryViewWithoutAWarning) {
    open();
    showReading(kInsulation);
    screen().pressRecord();
    settle();
    for (const std::string& line : testing::logLines()) EXPECT_EQ(line.rfind("info kestrix.", 0), 0U) << line;
}

TEST_F(MainWindowTest, DrawsNothingWhileNothingComes) {
    open();
    tester().appear();
    sendEarth(7);
    settle();
    const int before = frames();
    for (int i = 0; i < 50; ++i) QCoreApplication::processEvents();
    EXPECT_EQ(frames(), before);
}

TEST_F(MainWindowTest, AFloodOfRecordsIsDrawnOnceAFrameAndEndsWithTheLast) {
    open();
    tester().appear();
    settle();
    const int before = frames();
    for (std::uint16_t magnitude = 1; magnitude <= 1000; ++magnitude) sendEarth(magnitude);
    EXPECT_TRUE(testing::spinUntil([this] { return text("D1Value") == QStringLiteral("1000"); }));
    settle();
    EXPECT_LE(frames() - before, 3);
}

TEST_F(MainWindowTest, PaintNowPutsTheLatestStateOnTheDisplayAtOnce) {
    open();
    tester().appear();
    settle();
    const QImage before = onDisplay();
    sendEarth(123);
    EXPECT_EQ(onDisplay(), before);
    window().paintNow();
    const QImage after = onDisplay();
    EXPECT_NE(after, before);
    settle();
    EXPECT_EQ(onDisplay(), after);
}

TEST_F(MainWindowTest, AWindowThatWasHiddenShowsTheLatestStateWhenItComesBack) {
    open();
    showReading(kInsulation);
    window().hide();
    ASSERT_TRUE(testing::spinUntil([this] { return !window().isExposed(); }));
    window().paintNow();
    for (std::uint16_t magnitude = 1; magnitude <= 100; ++magnitude) {
        sendEarth(magnitude);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(text("D1Value"), QStringLiteral("100"));  // no frame tells it, and none is waited for
    window().show();
    ASSERT_TRUE(testing::spinUntil([this] { return window().isExposed(); }));
    settle();
    EXPECT_EQ(text("D1Value"), QStringLiteral("100"));
    sendEarth(101);
    EXPECT_TRUE(testing::spinUntil([this] { return text("D1Value") == QStringLiteral("101"); }));
}

TEST_F(MainWindowTest, ASecondWindowMayFollowTheFirst) {
    open();
    showReading(kEarth);
    open();
    EXPECT_EQ(text("D1Value"), QStringLiteral("14.3"));
    click("btnRecord");
    EXPECT_EQ(screen().dataList()->count(), 1);
}

// The script engine must not take the screen's controls for its own.
TEST_F(MainWindowTest, TheScreenOutlivesItsWindow) {
    open();
    showReading(kEarth);
    closeWindow();
    tester().play(kInsulation);
    EXPECT_EQ(screen().D1Value.text(), QStringLiteral("186.4"));
    open();
    EXPECT_EQ(text("D1Value"), QStringLiteral("186.4"));
}

TEST_F(MainWindowTest, AMinimisedWindowComesBackWhenItIsStartedOnceMore) {
    open();
    window().setWindowStates(Qt::WindowMinimized);
    testing::expectWarning("does not support raise");  // which tells that it was asked to
    window().bringForward();
    EXPECT_EQ(window().windowStates() & Qt::WindowMinimized, Qt::WindowNoState);
}

}  // namespace
}  // namespace kestrix::shell
