#include "platform/DeviceChannel.h"

#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace kestrix::platform {

DeviceChannel::DeviceChannel(std::unique_ptr<QIODevice> device) : device_(std::move(device)) {
    QObject::connect(device_.get(), &QIODevice::readyRead, device_.get(), [this] { tellBytes(); });
    QObject::connect(device_.get(), &QIODevice::bytesWritten, device_.get(), [this] {
        const auto tell = events.spaceAvailable;  // a copy: an event may replace the functions
        if (hasSpaceAvailable() && tell) tell();
    });
}

DeviceChannel::~DeviceChannel() {
    close();
}

std::size_t DeviceChannel::bytesAvailable() const {
    return closed_ ? 0 : static_cast<std::size_t>(device_->bytesAvailable());
}

std::ptrdiff_t DeviceChannel::read(std::uint8_t* buffer, std::size_t max) {
    if (closed_) return -1;
    const qint64 count = device_->read(reinterpret_cast<char*>(buffer), static_cast<qint64>(max));
    return count == 0 && failed_ && max > 0 ? -1 : count;
}

bool DeviceChannel::hasSpaceAvailable() const {
    return !closed_ && !failed_ && device_->bytesToWrite() < static_cast<qint64>(kBufferLimit);
}

std::ptrdiff_t DeviceChannel::write(std::span<const std::uint8_t> bytes) {
    if (closed_ || failed_) return -1;
    const qint64 room = std::max<qint64>(0, static_cast<qint64>(kBufferLimit) - device_->bytesToWrite());
    const qint64 count = std::min(room, static_cast<qint64>(bytes.size()));
    return device_->write(reinterpret_cast<const char*>(bytes.data()), count);
}

void DeviceChannel::close() {
    if (std::exchange(closed_, true)) return;
    device_->disconnect();  // a failed serial port would report its error without end
    device_->close();
}

// A write that fails reports it from inside the write, so the report is queued; it dies with the device.
void DeviceChannel::fail(const std::string& why) {
    if (closed_ || std::exchange(failed_, true)) return;
    QMetaObject::invokeMethod(
        device_.get(),
        [this, why] {
            if (bytesAvailable() > 0) tellBytes();
            const auto tell = events.closed;
            if (!closed_ && tell) tell(why);
        },
        Qt::QueuedConnection);
}

void DeviceChannel::tellBytes() {
    const auto tell = events.bytesAvailable;
    if (!closed_ && tell) tell();
}

}  // namespace kestrix::platform
