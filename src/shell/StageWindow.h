#pragma once

#include <QGuiApplication>
#include <QQuickView>
#include <QString>
#include <QUrl>
#include <QVariant>

#include "shell/WindowPlace.h"

namespace kestrix::shell {

// A window over the stage, fitted to any size: pictures, pacing and the keys that every window has. What it
// shows is its heir's.
class StageWindow : public QQuickView {
  public:
    // Of a window at its first start, where the screen has room for it, in device-independent pixels.
    static constexpr QSize kSize{384, 682};

    ~StageWindow() override;

    // Loads the views. False, with the problem in the log, when they do not load.
    virtual bool load() = 0;

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
    // views: the QML file of all that it shows, which another thread begins to read.
    explicit StageWindow(const QUrl& views);

    bool loadViews(const QVariantMap& properties);
    // Takes the place as far as the screens have room for it.
    void takePlace(WindowPlace wanted);
    // Where it stands; none before it was shown.
    std::optional<WindowPlace> place() const;

    // True when the key was one of the window's own: they act on every screen.
    virtual bool pressKey(const QKeyEvent& event);

    void resizeEvent(QResizeEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

  private:
    void keepOnScreen();
    void fitStage();
    bool comesOfHoldingTheKey(const QKeyEvent& event) const;
    bool isOfAnotherMouseButton(const QMouseEvent& event);
    void quit();
    void closeIt();
    void toggleFullScreen();

    QUrl views_;
    QRect lastNormal_;  // its place when it last was not full screen
    bool shown_ = false;
    Qt::MouseButton mouseButton_ = Qt::NoButton;  // the one that is held
    int releasedKey_ = 0;
    bool repeatsArePresses_ = QGuiApplication::platformName() == QLatin1String("xcb");
    quint64 releasedAt_ = 0;  // by the clock of the events, milliseconds
};

}  // namespace kestrix::shell
