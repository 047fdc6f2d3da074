#pragma once

#include <QTemporaryDir>

#include <string>
#include <vector>

#include "shell/AppDelegate.h"
#include "shell/MainWindow.h"

namespace kestrix::bench {

// The application with its window shown, in a folder of its own. One a process; needs the QGuiApplication.
class Application {
  public:
    // uris: where it looks for testers. scheduler: not owned; none: the event loop's. Ends the program when
    // it does not start.
    explicit Application(const std::vector<std::string>& uris, platform::Scheduler* scheduler = nullptr);

    shell::AppDelegate& delegate() { return delegate_; }
    shell::MainWindow& window() { return window_; }

  private:
    shell::LaunchOptions options(const std::vector<std::string>& uris, platform::Scheduler* scheduler) const;

    QTemporaryDir folder_;
    shell::AppDelegate delegate_;
    shell::MainWindow window_;
};

// What the application's own program does before all this, without its log lines. After the QGuiApplication.
void prepareApplication();

}  // namespace kestrix::bench
