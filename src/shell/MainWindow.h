#pragma once

#include "platform/NotificationCenter.h"
#include "shell/AppDelegate.h"
#include "shell/StageWindow.h"

namespace kestrix::shell {

// The application's window: the live screen and what is presented in front of it.
class MainWindow : public StageWindow {
  public:
    // The application outlives the window.
    explicit MainWindow(AppDelegate& application);
    ~MainWindow() override;

    bool load() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool pressKey(const QKeyEvent& event) override;

  private:
    void takeRememberedPlace();
    void rememberPlace();
    void showTitle(std::int32_t linkState);
    void showHelp();

    AppDelegate& application_;
    platform::NotificationCenter::Subscription linkStates_;
};

}  // namespace kestrix::shell
