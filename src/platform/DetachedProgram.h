#pragma once

#include <QStringList>

#include <functional>
#include <memory>
#include <string>

class QSocketNotifier;

namespace kestrix::platform {

// A program that goes on when this one ends. Until then it is listened to.
class DetachedProgram {
  public:
    // ended: called from the event loop when the program has ended, with the last line that it wrote to its
    // standard error; empty without one. It may destroy this.
    DetachedProgram(const QString& program, const QStringList& arguments,
                    std::function<void(const std::string& lastLine)> ended);
    DetachedProgram(const DetachedProgram&) = delete;
    DetachedProgram& operator=(const DetachedProgram&) = delete;
    ~DetachedProgram();

    bool isStarted() const { return started_; }

  private:
    void listen(const std::function<void(const std::string& lastLine)>& ended);

    bool started_ = false;
    int errors_ = -1;
    std::string said_;  // since the last whole line began
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kestrix::platform
