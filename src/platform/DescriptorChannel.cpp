#include "platform/DescriptorChannel.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace kestrix::platform {
namespace {

bool isForLater(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

}  // namespace

StreamSocket::StreamSocket(int descriptor) : descriptor_(descriptor) {
    fcntl(descriptor_, F_SETFL, fcntl(descriptor_, F_GETFL) | O_NONBLOCK);
}

// The line goes down now, not with the last copy of the descriptor.
StreamSocket::~StreamSocket() {
    hangUp();
    ::close(descriptor_);
}

void StreamSocket::hangUp() const {
    ::shutdown(descriptor_, SHUT_RDWR);
}

DescriptorChannel::DescriptorChannel(std::shared_ptr<StreamSocket> socket)
    : socket_(std::move(socket)),
      readable_(std::make_unique<QSocketNotifier>(socket_->descriptor(), QSocketNotifier::Read)),
      writable_(std::make_unique<QSocketNotifier>(socket_->descriptor(), QSocketNotifier::Write)) {
    writable_->setEnabled(false);
    QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(), [this] { receive(); });
    QObject::connect(writable_.get(), &QSocketNotifier::activated, writable_.get(), [this] { send(); });
}

DescriptorChannel::~DescriptorChannel() {
    close();
}

std::ptrdiff_t DescriptorChannel::read(std::uint8_t* buffer, std::size_t max) {
    if (closed_) return -1;
    const std::size_t count = std::min(max, incoming_.size() - taken_);
    if (count == 0) return ended_ && max > 0 ? -1 : 0;
    std::memcpy(buffer, incoming_.data() + taken_, count);
    taken_ += count;
    if (taken_ == incoming_.size()) {
        incoming_.clear();
        taken_ = 0;
        // A full buffer made the tester wait.
        if (!ended_) readable_->setEnabled(true);
    }
    return static_cast<std::ptrdiff_t>(count);
}

bool DescriptorChannel::hasSpaceAvailable() const {
    return !closed_ && !ended_ && !writeFailed_ && outgoing_.size() < kBufferLimit;
}

std::ptrdiff_t DescriptorChannel::write(std::span<const std::uint8_t> bytes) {
    if (closed_ || ended_ || writeFailed_) return -1;
    const std::size_t count = std::min(bytes.size(), kBufferLimit - outgoing_.size());
    outgoing_.insert(outgoing_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    if (count > 0) writable_->setEnabled(true);
    return static_cast<std::ptrdiff_t>(count);
}

void DescriptorChannel::close() {
    if (std::exchange(closed_, true)) return;
    readable_->setEnabled(false);
    writable_->setEnabled(false);
    socket_.reset();
}

// Takes what the buffer has room for, which is what one turn of the event loop may take.
void DescriptorChannel::receive() {
    std::string why;
    const std::size_t before = incoming_.size();
    incoming_.resize(kBufferLimit);
    std::size_t filled = before;
    while (filled < kBufferLimit && why.empty()) {
        const ssize_t count =
            ::recv(socket_->descriptor(), incoming_.data() + filled, kBufferLimit - filled, 0);
        if (count > 0) {
            filled += static_cast<std::size_t>(count);
        } else if (count == 0) {
            why = "the tester has ended the connection";
        } else if (isForLater(errno)) {
            break;
        } else {
            why = "the connection was lost: " + std::generic_category().message(errno);
        }
    }
    incoming_.resize(filled);
    if (filled == kBufferLimit) readable_->setEnabled(false);
    const auto tell = events.bytesAvailable;  // a copy: an event may replace the functions
    if (filled > before && tell) tell();
    if (!why.empty() && !closed_) end(why);
}

void DescriptorChannel::end(const std::string& why) {
    ended_ = true;
    readable_->setEnabled(false);
    writable_->setEnabled(false);
    const auto tell = events.closed;
    if (tell) tell(why);
}

void DescriptorChannel::send() {
    const bool wasFull = !hasSpaceAvailable();
    const ssize_t count = ::send(socket_->descriptor(), outgoing_.data(), outgoing_.size(), MSG_NOSIGNAL);
    if (count > 0) {
        outgoing_.erase(outgoing_.begin(), outgoing_.begin() + count);
    } else if (count < 0 && !isForLater(errno)) {
        // The reading side finds out why, behind the last that has come.
        writeFailed_ = true;
        outgoing_.clear();
    }
    if (outgoing_.empty()) writable_->setEnabled(false);
    const auto tell = events.spaceAvailable;
    if (wasFull && hasSpaceAvailable() && tell) tell();
}

}  // namespace kestrix::platform
