#pragma once

#include <QQuickView>
#include <QString>

#include "shell/AppDelegate.h"

namespace kestrix::shell {

// The application's window: the live screen and what is presented in front of it, fitted to any size.
class MainWindow : public QQuickView {
  public:
    // Of the window when nobody says otherwise, in device-independent pixels.
    static constexpr QSize kSize{384, 682};

    // The application outlives the window.
    explicit MainWindow(AppDelegate& application);
    ~MainWindow() override;

    // Loads the views. False, with the problem in the log, when they do not load.
    bool load();

    // Draws what has changed now, rather than in the next turn of the event loop: before something that
    // blocks.
    void paintNow();

    // In front of other windows, and no longer minimised: somebody wanted to start it once more.
    void bringForward();

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void fitStage(const QSize& size);

    AppDelegate& application_;
};

}  // namespace kestrix::shell
