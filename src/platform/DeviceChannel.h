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

    // The device has ended or failed: reports it once, after the bytes that are still there.
    void fail(const std::string& why);

  private:
    std::unique_ptr<QIODevice> device_;
    bool closed_ = false;
};

}  // namespace kestrix::platform
