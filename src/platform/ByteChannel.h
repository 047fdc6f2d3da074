#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace kestrix::platform {

// An open two-way channel of bytes to a tester. It never blocks and never throws; both directions are
// bounded. Events come from the event loop of the thread that made the channel, never from inside a call to
// it.
class ByteChannel {
  public:
    static constexpr std::size_t kBufferLimit = 65'536;  // bytes kept in either direction

    struct Events {
        std::function<void()> bytesAvailable;
        std::function<void()> spaceAvailable;
        std::function<void(const std::string& why)> closed;  // ended or failed; once, and the last event
    };

    ByteChannel() = default;
    ByteChannel(const ByteChannel&) = delete;
    ByteChannel& operator=(const ByteChannel&) = delete;
    virtual ~ByteChannel() = default;

    virtual std::size_t bytesAvailable() const = 0;
    // Reads at most `max` bytes; 0 when there are none, -1 on an error.
    virtual std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) = 0;
    virtual bool hasSpaceAvailable() const = 0;
    // Takes as many bytes as there is room for and returns their count; -1 on an error.
    virtual std::ptrdiff_t write(std::span<const std::uint8_t> bytes) = 0;
    // Gives the channel up: no event comes any more.
    virtual void close() = 0;

    Events events;
};

}  // namespace kestrix::platform
