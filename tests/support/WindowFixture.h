#pragma once

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QPointingDevice>
#include <QRectF>
#include <QSize>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <string>

#include "shell/AppDelegate.h"
#include "shell/MainWindow.h"
#include "tests/support/FakeMail.h"
#include "tests/support/FakeNetwork.h"
#include "tests/support/FakeTester.h"
#include "tests/support/Items.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix::testing {

// The application with its window, in folders of the test's own, with a tester and the time in its hand.
class WindowFixture : public ::testing::Test {
  protected:
    static constexpr QSize kSmall{320, 568};

    WindowFixture();
    ~WindowFixture() override;

    // What the application is started with; to be changed before it is.
    shell::LaunchOptions options_;
    FakeNetwork network_;
    FakeMail mail_;

    void start();
    // Ends it, window and all; it can be started anew.
    void stop();
    // Starts the application if it is not yet, and shows its window. size: in device-independent pixels.
    void open(QSize size = kSmall);
    // Shows this window in place of the one before.
    void showWindow(std::unique_ptr<shell::StageWindow> window, QSize size = kSmall);
    void closeWindow() { window_.reset(); }
    void resize(QSize size);
    // Turns the event loop until the window shows everything that it was told.
    void settle();

    shell::AppDelegate& app() { return *app_; }
    live::MainViewController& screen() { return app_->mainView(); }
    shell::StageWindow& window() { return *window_; }
    FakeTester& tester() { return *tester_; }
    int frames() const { return frames_; }  // that the window drew
    std::string databasePath() const;

    // The tester comes and shows what the scenario says.
    void showReading(std::string_view scenario);

    // One that is missing fails the test.
    QQuickItem& item(const QString& name);
    QQuickItem& item(const char* name) { return item(QString::fromLatin1(name)); }
    // What has never been shown may not have been made.
    bool isShown(const char* name);
    // Of a label.
    QString text(const char* name) { return textOf(item(name)).property("text").toString(); }

    // In points of the stage.
    QRectF placeOf(QQuickItem& item);
    QRectF placeOf(const char* name) { return placeOf(item(name)); }
    // In the window.
    QPoint pointIn(QQuickItem& item, QPointF fraction = {0.5, 0.5});
    QPoint centreOf(const char* name) { return pointIn(item(name)); }

    void click(const char* name);
    void pressMouse(const char* name);
    void releaseMouse(QPoint at);
    void tap(const char* name);
    static QPointingDevice* touchScreen();
    void pressKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    // The name of what has the keyboard.
    std::string focused() const;

    // What really stands on the display now, in its pixels. Draws nothing, unless a point has several pixels.
    QImage onDisplay() const;
    // The pixels of the display that an area of the stage covers, at least in part.
    QRect pixelsOf(const QRectF& stage);

    QTemporaryDir folder_;
    ManualScheduler scheduler_;

  private:
    std::unique_ptr<shell::AppDelegate> app_;
    std::optional<FakeTester> tester_;
    std::unique_ptr<shell::StageWindow> window_;
    int frames_ = 0;
};

}  // namespace kestrix::testing
