#pragma once

#include <QCoreApplication>
#include <QSocketNotifier>

#include <functional>
#include <memory>

#include "apps/kestrix-cli/Runner.h"
#include "platform/Scheduler.h"

namespace kestrix::cli {

// Goes on writing to an output from the event loop, whenever its reader takes something. The output must
// outlive it.
class OutputPump {
  public:
    // taken: called when the reader has taken everything, or can take nothing any more.
    explicit OutputPump(Output& output, std::function<void()> taken = {});
    OutputPump(const OutputPump&) = delete;
    OutputPump& operator=(const OutputPump&) = delete;
    ~OutputPump();

  private:
    void watch();

    Output& output_;
    std::function<void()> taken_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

// The event loop of a command. It has to be there before anything that has timers or sockets.
class EventLoop {
  public:
    explicit EventLoop(Runner& runner);
    // On an application that needs more than Qt's core. It was made with the runner's arguments.
    EventLoop(Runner& runner, std::unique_ptr<QCoreApplication> application);
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    ~EventLoop();

    platform::QtScheduler scheduler;

    // Called whenever the reader of standard output has taken all that was written. Nothing by default.
    std::function<void()> outputTaken;

    // Runs until quit(), a signal, the end of the time, or an output that cannot be written any more.
    void run();
    static void quit() { QCoreApplication::quit(); }

  private:
    Runner& runner_;
    std::unique_ptr<QCoreApplication> application_;
    OutputPump pump_;
};

}  // namespace kestrix::cli
