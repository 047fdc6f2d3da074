#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace kestrix::platform {

// An open two-way channel of bytes to a tester.
//
// The contract, which tests/platform/ChannelConformance_test.cpp holds every channel to:
// - Main thread only. No call blocks, and none throws.
// - Events come from the event loop, never from inside a call to the channel.
// - An event may close the channel, and may replace the event functions. It must not destroy the channel: who
// wants that
//   closes it and destroys it in a later turn.
// - read() gives what has come, in order and once. 0: there is nothing now, an event tells of more. -1: the
// channel was
//   closed, or it has ended and everything was read.
// - bytesAvailable comes whenever more bytes have come than before. A reader that leaves bytes is not told of
// them again.
// - write() takes as many bytes as there is room for, from the front, and returns their count. 0: there is no
// room now.
//   -1: the channel was closed or has failed.
// - While hasSpaceAvailable() holds, the next write() of at least one byte takes at least one. Once there was
// no room,
//   spaceAvailable comes when there is room again.
// - Both directions are bounded: about kBufferLimit bytes wait in the channel; beyond that the sender waits.
// - One turn of the event loop takes no longer than kBufferLimit bytes need, however fast bytes come.
// - closed comes once, when the channel has ended or failed, with the reason in one line, and is the last
// event. What had
//   come before can still be read, and was told of by bytesAvailable. After close() it does not come.
// - close() gives the channel up: no event comes any more, read() and write() give -1. Closing twice is
// harmless, and
//   destroying closes.
class ByteChannel {
  public:
    static constexpr std::size_t kBufferLimit = 65'536;  // bytes kept in either direction

    struct Events {
        std::function<void()> bytesAvailable;
        std::function<void()> spaceAvailable;
        std::function<void(const std::string& why)> closed;
    };

    ByteChannel() = default;
    ByteChannel(const ByteChannel&) = delete;
    ByteChannel& operator=(const ByteChannel&) = delete;
    virtual ~ByteChannel() = default;

    // How many bytes read() would give now.
    virtual std::size_t bytesAvailable() const = 0;
    virtual std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) = 0;
    virtual bool hasSpaceAvailable() const = 0;
    virtual std::ptrdiff_t write(std::span<const std::uint8_t> bytes) = 0;
    virtual void close() = 0;

    Events events;
};

}  // namespace kestrix::platform
