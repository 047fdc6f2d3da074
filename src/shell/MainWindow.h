#pragma once

#include <QGuiApplication>
#include <QQuickView>
#include <QString>

#include "platform/NotificationCenter.h"
#include "shell/AppDelegate.h"

namespace kestrix::shell {

// The application's window: the live screen and what is presented in front of it, fitted to any size.
class MainWindow : public QQuickView {
  public:
    // Of the window at the first start, where the screen has room for it, in device-independent pixels.
    static constexpr QSize kSize{384, 682};

    // The application outlives the window.
    explicit MainWindow(AppDelegate& application);
    ~MainWindow() override;

    // Loads the views. False, with the problem in the log, when they do not load.
    bool load();

    // Shows it in the state that was remembered; QWindow's own would make it normal.
    void show() { setVisible(true); }

    // Draws what has changed now, rather than in the next turn of the event loop: before something that
    // blocks.
    void paintNow();

    // In front of other windows, and no longer minimised: somebody wanted to start it once more.
    void bringForward();

    // Whether the display server tells the repeats of a held key as presses.
    void setRepeatsArePresses(bool are) { repeatsArePresses_ = are; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void takePlace();
    void rememberPlace();
    void keepOnScreen();
    void fitStage();
    void showTitle(std::int32_t linkState);
    // True when the key was one of the window's own: they act on every screen.
    bool pressKey(const QKeyEvent& event);
    bool comesOfHoldingTheKey(const QKeyEvent& event) const;
    bool isOfAnotherMouseButton(const QMouseEvent& event);
    void quit();
    void closeIt();
    void toggleFullScreen();
    void showHelp();

    AppDelegate& application_;
    platform::NotificationCenter::Subscription linkStates_;
    QRect lastNormal_;  // its place when it last was not full screen
    bool shown_ = false;
    Qt::MouseButton mouseButton_ = Qt::NoButton;  // the one that is held
    int releasedKey_ = 0;
    bool repeatsArePresses_ = QGuiApplication::platformName() == QLatin1String("xcb");
    quint64 releasedAt_ = 0;  // by the clock of the events, milliseconds
};

}  // namespace kestrix::shell
