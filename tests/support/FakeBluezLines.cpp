// The testers' ends of the lines.
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

#include "tests/support/FakeBluez.h"

namespace kestrix::testing {

int FakeBluez::line(const std::string& address) const {
    const auto line = lines_.find(address);
    return line != lines_.end() ? line->second.tester : -1;
}

bool FakeBluez::send(const std::string& address, std::string_view bytes) {
    return ::send(line(address), bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
}

std::string FakeBluez::receive(const std::string& address) {
    std::string all;
    std::array<char, 4096> piece;
    ssize_t count = 0;
    while ((count = ::recv(line(address), piece.data(), piece.size(), MSG_DONTWAIT)) > 0)
        all.append(piece.data(), static_cast<std::size_t>(count));
    return all;
}

bool FakeBluez::lineHasEnded(const std::string& address) const {
    pollfd state{line(address), POLLIN | POLLRDHUP, 0};
    return poll(&state, 1, 0) > 0 && (state.revents & (POLLRDHUP | POLLHUP)) != 0;
}

void FakeBluez::endLine(const std::string& address) {
    if (!lines_.contains(address)) return;
    ::shutdown(lines_[address].tester, SHUT_RDWR);
    ::close(lines_[address].tester);
    ::close(lines_[address].kept);
    lines_.erase(address);
    if (devices_.contains(address) && devices_[address].connected) set(address, "Connected", false);
}

}  // namespace kestrix::testing
