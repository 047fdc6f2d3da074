#include "tests/cli/Sockets.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <utility>

namespace kestrix::cli {
namespace {

constexpr int kPatienceMilliseconds = 60'000;
constexpr std::string_view kPlace = "the tester is at tcp://127.0.0.1:";

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool waitFor(int descriptor, short events) {
    pollfd state{descriptor, events, 0};
    const bool came = poll(&state, 1, kPatienceMilliseconds) > 0;
    EXPECT_TRUE(came) << "nothing came within the time that only a hang takes";
    return came;
}

std::vector<std::string> simulateWith(std::vector<std::string> options) {
    options.insert(options.begin(), {"simulate", "--tcp", "127.0.0.1:0"});
    return options;
}

}  // namespace

Listener::Listener() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), size), 0);
    EXPECT_EQ(listen(socket_.get(), 5), 0);
    EXPECT_EQ(getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    port_ = ntohs(address.sin_port);
}

Descriptor Listener::accept() const {
    if (!waitFor(socket_.get(), POLLIN)) return Descriptor();
    return Descriptor(accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
}

Descriptor connectTo(std::uint16_t port, int receiveBuffer) {
    Descriptor client(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (receiveBuffer > 0) {
        EXPECT_EQ(setsockopt(client.get(), SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer), 0);
    }
    const sockaddr_in address = loopback(port);
    EXPECT_EQ(connect(client.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    return client;
}

Descriptor openPort(const std::string& path) {
    return Descriptor(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
}

std::string receive(const Descriptor& from, std::size_t size) {
    std::string bytes;
    std::array<char, 65536> piece;
    while (bytes.size() < size && waitFor(from.get(), POLLIN)) {
        const ssize_t count = read(from.get(), piece.data(), std::min(piece.size(), size - bytes.size()));
        if (count <= 0) break;
        bytes.append(piece.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

void sendAll(const Descriptor& to, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = send(to.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        ASSERT_GT(count, 0);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::string receiveToEnd(const Descriptor& from) {
    return receive(from, std::numeric_limits<std::size_t>::max());
}

bool writeAll(const Descriptor& to, std::string_view bytes) {
    const int flags = fcntl(to.get(), F_GETFL);
    fcntl(to.get(), F_SETFL, flags | O_NONBLOCK);
    while (!bytes.empty()) {
        const ssize_t count = write(to.get(), bytes.data(), bytes.size());
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EAGAIN || !waitFor(to.get(), POLLOUT)) {
            break;
        }
    }
    fcntl(to.get(), F_SETFL, flags);
    return bytes.empty();
}

SimulatedTester::SimulatedTester(std::vector<std::string> options)
    : program_(simulateWith(std::move(options))) {
    const bool said =
        program_.waitUntil([this] { return !program_.output().empty() && program_.output().back() == '\n'; });
    EXPECT_TRUE(said && program_.output().rfind(kPlace, 0) == 0) << program_.output() << program_.error();
    if (!said) return;
    port_ = static_cast<std::uint16_t>(
        std::strtoul(program_.output().substr(kPlace.size()).c_str(), nullptr, 10));
}

}  // namespace kestrix::cli
