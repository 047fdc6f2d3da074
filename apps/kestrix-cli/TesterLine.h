#pragma once

#include <memory>
#include <span>

#include "platform/GeneratedChannel.h"
#include "platform/Scheduler.h"

namespace kestrix::cli {

// Where a simulated tester sends its bytes: a socket or a pseudo terminal.
class LineEnd {
  public:
    virtual ~LineEnd() = default;
    virtual std::size_t room() const = 0;  // bytes that write() takes now
    // At most room(), or the last bytes before hangUp().
    virtual void write(std::span<const std::uint8_t> bytes) = 0;
    virtual void hangUp() = 0;
};

// A tester in software on one line, which one client at a time uses. It plays while a client is there; a
// later client meets the scenario where the one before left it.
class TesterLine {
  public:
    // The line's end and the scheduler must outlive this object.
    TesterLine(platform::GeneratedDialer::MakeProducer producers, LineEnd& end,
               platform::Scheduler& scheduler);
    ~TesterLine();

    bool playing() const { return channel_ != nullptr; }
    void clientCame();
    void clientLeft();
    // Sends what the tester has made and the line takes.
    void pump();

  private:
    void sendTheRest();

    platform::GeneratedDialer dialer_;
    LineEnd& end_;
    platform::Scheduler& scheduler_;
    std::unique_ptr<platform::ByteChannel> channel_;
    std::unique_ptr<platform::ByteChannel> buried_;  // a channel must not be destroyed inside its own event
    platform::Scheduler::Timer burial_;
};

}  // namespace kestrix::cli
