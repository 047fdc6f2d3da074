#include "tests/support/FakeChannel.h"

#include <algorithm>
#include <memory>

namespace kestrix::testing {

void FakeLine::receive(std::span<const std::uint8_t> bytes) {
    incoming.insert(incoming.end(), bytes.begin(), bytes.end());
    tellBytes();
}

void FakeLine::tellBytes() {
    if (channel == nullptr) return;
    const auto tell = channel->events.bytesAvailable;  // a copy: the event may end the channel
    if (tell) tell();
}

void FakeLine::makeRoom(std::size_t bytes) {
    room += bytes;
    if (channel == nullptr) return;
    const auto tell = channel->events.spaceAvailable;
    if (tell) tell();
}

void FakeLine::end(const std::string& why) {
    ended = true;
    if (channel == nullptr) return;
    const auto tell = channel->events.closed;
    if (tell) tell(why);
}

std::size_t FakeChannel::bytesAvailable() const {
    if (closed_) return 0;
    return line_.readFails ? 1 : line_.incoming.size();
}

std::ptrdiff_t FakeChannel::read(std::uint8_t* buffer, std::size_t max) {
    if (closed_ || line_.readFails) return -1;
    const std::size_t count = std::min(max, line_.incoming.size());
    std::copy_n(line_.incoming.begin(), count, buffer);
    line_.incoming.erase(line_.incoming.begin(), line_.incoming.begin() + static_cast<std::ptrdiff_t>(count));
    if (count > 0) line_.reads.push_back(count);
    return count == 0 && line_.ended ? -1 : static_cast<std::ptrdiff_t>(count);
}

std::ptrdiff_t FakeChannel::write(std::span<const std::uint8_t> bytes) {
    if (closed_ || line_.ended || line_.writeFails) return -1;
    const std::size_t count = std::min({bytes.size(), line_.room, line_.most});
    line_.written.insert(line_.written.end(), bytes.begin(),
                         bytes.begin() + static_cast<std::ptrdiff_t>(count));
    line_.room -= count;
    return static_cast<std::ptrdiff_t>(count);
}

void FakeChannel::close() {
    ++line_.closeCalls;
    closed_ = true;
    if (line_.channel != this) return;
    line_.channel = nullptr;  // no event comes any more
    line_.incoming.clear();   // and nobody can read it
}

std::unique_ptr<platform::ByteChannel> FakeOpener::openChannel(const platform::Accessory&,
                                                               const std::string&) {
    if (lines.empty()) return nullptr;
    FakeLine& line = *lines.front();
    lines.pop_front();
    return std::make_unique<FakeChannel>(line);
}

}  // namespace kestrix::testing
