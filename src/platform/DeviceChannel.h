#pragma once

#include <QIODevice>

#include <memory>

#include "platform/ByteChannel.h"

namespace kestrix::platform {

// A channel over an open Qt device (socket or serial port). The device's own read buffer is limited by its
// maker.
class DeviceChannel final : public ByteChannel {
  public:
    explicit DeviceChannel(std::unique_ptr<QIODevice> device);
    ~DeviceChannel() override;

    std::size_t bytesAvailable() const override;
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override;
    bool hasSpaceAvailable() const override;
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override;
    void close() override;

    // The device has ended or failed. Reports it once, however often it is called, and from the event loop.
    // What the device had read by then can still be read; what the kernel still held went with the line.
    void fail(const std::string& why);

  private:
    void tellBytes();

    std::unique_ptr<QIODevice> device_;
    bool failed_ = false;
    bool closed_ = false;
};

}  // namespace kestrix::platform
