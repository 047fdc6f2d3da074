// The window itself: when it draws, and what it shows then.
#include "shell/MainWindow.h"

#include <QGuiApplication>
#include <QIcon>
#include <QScreen>
#include <QTimer>

#include <functional>
#include <utility>

#include "simulator/FrameEncoder.h"
#include "tests/shell/Scenarios.h"
#include "tests/support/EventLoop.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/WindowFixture.h"
#include "ui/DisplayUpdates.h"
#include "ui/StageMetrics.h"

namespace kestrix::shell {
namespace {

class MainWindowTest : public testing::WindowFixture {
  protected:
    void sendEarth(std::uint16_t magnitude) {
        simulator::Display display;
        display.readings[0] = {.magnitude = magnitude};
        tester().send(simulator::encodeFrame(display));
    }
    QImage firstPictureWhenShown() {
        QImage first;
        const QObject untilItCame;
        QObject::connect(&window(), &QQuickWindow::frameSwapped, &untilItCame, [&] {
            if (first.isNull()) first = onDisplay();
        });
        window().show();
        EXPECT_TRUE(testing::spinUntil([&] { return !first.isNull(); })) << "it is not drawn";
        return first;
    }
    // Of a window that is made before the desktop has drawn its frame.
    static QSize largestSize() { return QGuiApplication::primaryScreen()->availableSize() - QSize(8, 40); }
};

TEST_F(MainWindowTest, HasATitleASizeAndALeastSize) {
    start();
    MainWindow fresh(app());
    EXPECT_EQ(fresh.title(), QStringLiteral("Not connected - Kestrix"));
    EXPECT_EQ(fresh.size(), MainWindow::kSize.boundedTo(largestSize()));
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

// Neither the frame that was asked for before it was hidden nor what came meanwhile may be what is seen
// first.
TEST_F(MainWindowTest, AWindowThatIsHiddenBeforeItsFrameWaitsForNone) {
    open();
    tester().appear();
    sendEarth(9);
    settle();
    const QImage nine = onDisplay();
    sendEarth(7);
    settle();
    sendEarth(8);
    ui::DisplayUpdates::shared().flush();  // asks for a frame
    window().hide();
    // The frame comes by a timer: it is hidden before.
    for (int turn = 0; turn < 100 && window().isExposed(); ++turn)
        QCoreApplication::processEvents(QEventLoop::X11ExcludeTimers);
    ASSERT_FALSE(window().isExposed());
    sendEarth(9);
    for (int turn = 0; turn < 10; ++turn) QCoreApplication::processEvents();
    EXPECT_EQ(text("D1Value"), QStringLiteral("9"));
    const QImage first = firstPictureWhenShown();
    EXPECT_EQ(first, nine);
}

// Calls just before the window is told that it can be seen.
class BeforeExposure final : public QObject {
  public:
    BeforeExposure(QWindow& window, std::function<void()> call) : window_(window), call_(std::move(call)) {
        window.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Expose && window_.isExposed() && call_) std::exchange(call_, nullptr)();
        return false;
    }

  private:
    QWindow& window_;
    std::function<void()> call_;
};

TEST_F(MainWindowTest, TheFirstPictureAfterItWasHiddenHoldsWhatCameAtThatMoment) {
    open();
    tester().appear();
    sendEarth(9);
    settle();
    const QImage nine = onDisplay();
    sendEarth(7);
    settle();
    window().hide();
    ASSERT_TRUE(testing::spinUntil([this] { return !window().isExposed(); }));
    const BeforeExposure arrival(window(), [this] { sendEarth(9); });
    EXPECT_EQ(firstPictureWhenShown(), nine);
}

// As when a screen's scale changes under the window: what was fitted does not fit any more.
TEST_F(MainWindowTest, AnotherScaleOnTheSameScreenIsFollowed) {
    open();
    const double line = ui::StageMetrics::shared().line();
    ui::StageMetrics::shared().fit(window().size(), window().devicePixelRatio() * 1.7);
    EXPECT_NE(ui::StageMetrics::shared().line(), line);
    settle();
    EXPECT_EQ(ui::StageMetrics::shared().line(), line);
}

TEST_F(MainWindowTest, TheTitleTellsTheStateAndTheTester) {
    open();
    EXPECT_EQ(window().title(), QStringLiteral("Not connected - Kestrix"));
    tester().appear();
    EXPECT_EQ(window().title().left(13), QStringLiteral("Connected to "));
    tester().leave();
    EXPECT_EQ(window().title(), QStringLiteral("Not connected - Kestrix"));
}

TEST_F(MainWindowTest, TheTitleTellsThatTheTesterIsSimulated) {
    options_.uris = {"simulator:voltage"};
    open();
    EXPECT_EQ(window().title(), QStringLiteral("Not connected (simulated) - Kestrix"));
}

TEST_F(MainWindowTest, ItsSizeIsRememberedInTheSettings) {
    open();
    resize({400, 700});
    stop();
    start();
    EXPECT_EQ(MainWindow(app()).size(), QSize(400, 700).boundedTo(largestSize()));
}

TEST_F(MainWindowTest, ARememberedSizeIsNoSmallerThanTheLeast) {
    start();
    app().settings().setInteger(QStringLiteral("windowWidth"), 1);
    app().settings().setInteger(QStringLiteral("windowHeight"), 1);
    EXPECT_EQ(MainWindow(app()).size(), QSize(160, 240));
}

TEST_F(MainWindowTest, TheSizeBeforeFullScreenIsRememberedAndThatItWasFullScreen) {
    open({400, 600});
    pressKey(Qt::Key_F11);
    ASSERT_TRUE(testing::spinUntil([this] { return item("stage").size() == window().screen()->size(); }));
    EXPECT_EQ(window().windowStates(), Qt::WindowFullScreen);
    stop();
    start();
    {
        const MainWindow again(app());
        EXPECT_EQ(again.windowStates(), Qt::WindowFullScreen);
        EXPECT_EQ(again.size(), QSize(400, 600).boundedTo(largestSize()));
    }
    open({400, 600});
    pressKey(Qt::Key_F11);
    EXPECT_EQ(window().windowStates(), Qt::WindowNoState);
}

TEST_F(MainWindowTest, F1PressesHelpOnTheLiveScreenOnly) {
    open();
    app().alerts().show({.text = QStringLiteral("Sure?"), .buttons = {QStringLiteral("OK")}}, window());
    pressKey(Qt::Key_F1);
    EXPECT_EQ(app().screens().count(), 0) << "through an alert";
    app().alerts().answer(0);
    pressKey(Qt::Key_F1);
    ASSERT_EQ(app().screens().count(), 1);
    EXPECT_EQ(app().screens().topmost()->id(), ui::ScreenId::BluetoothConnectionHelp);
    pressKey(Qt::Key_F1);
    EXPECT_EQ(app().screens().count(), 1) << "from behind a screen";
}

TEST_F(MainWindowTest, CtrlWClosesIt) {
    open();
    pressKey(Qt::Key_W);
    EXPECT_TRUE(window().isVisible());
    pressKey(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(MainWindowTest, CtrlQEndsTheApplication) {
    open();
    bool quits = false;
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &window(), [&] { quits = true; });
    QTimer::singleShot(0, &window(), [this] { pressKey(Qt::Key_Q, Qt::ControlModifier); });
    QTimer::singleShot(std::chrono::seconds(30), &window(), [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_TRUE(quits);
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
