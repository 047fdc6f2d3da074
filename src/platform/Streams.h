#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrix::platform {

class Stream;

// What a stream tells its delegate, with the codes that it always had.
enum class StreamEvent : std::uint64_t {
    HasBytesAvailable = 2,  // input: more bytes have come
    HasSpaceAvailable = 4,  // output: it has just been opened, or there is room again
    EndEncountered = 16,    // input: the accessory's channel has ended or failed
};

class StreamDelegate {
  public:
    virtual ~StreamDelegate() = default;
    virtual void stream(Stream& stream, StreamEvent event) = 0;
};

// One direction of a session. Events reach the delegate while the stream is open and scheduled, on the thread
// that owns the session.
class Stream {
  public:
    Stream() = default;
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    virtual ~Stream() = default;

    void setDelegate(StreamDelegate* delegate) { delegate_ = delegate; }  // not owned
    virtual void scheduleInRunLoop() { scheduled_ = true; }
    virtual void removeFromRunLoop() { scheduled_ = false; }
    virtual void open() { open_ = true; }
    virtual void close() { open_ = false; }

    void deliver(StreamEvent event) {
        if (delegate_ != nullptr && open_ && scheduled_) delegate_->stream(*this, event);
    }

  private:
    StreamDelegate* delegate_ = nullptr;
    bool open_ = false;
    bool scheduled_ = false;
};

class InputStream : public Stream {
  public:
    virtual bool hasBytesAvailable() const = 0;
    // Reads at most `max` bytes; returns their count: 0 when there are none now, negative on an error or
    // behind the end.
    virtual std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) = 0;
};

class OutputStream : public Stream {
  public:
    virtual bool hasSpaceAvailable() const = 0;
    // Returns the count of bytes taken from the front: 0 when there is no room now, -1 on an error.
    virtual std::ptrdiff_t write(std::span<const std::uint8_t> bytes) = 0;
};

}  // namespace kestrix::platform
