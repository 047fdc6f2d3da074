#include "tests/cli/SerialPort.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <pty.h>
#include <termios.h>

#include <array>

namespace kestrix::cli {

SerialPort::SerialPort() {
    int testers = -1;
    int users = -1;
    std::array<char, 128> path{};
    termios raw{};
    cfmakeraw(&raw);
    EXPECT_EQ(openpty(&testers, &users, path.data(), &raw, nullptr), 0);
    tester = Descriptor(testers);
    user = Descriptor(users);
    EXPECT_EQ(fcntl(testers, F_SETFD, FD_CLOEXEC), 0);
    EXPECT_EQ(fcntl(users, F_SETFD, FD_CLOEXEC), 0);
    name = path.data();
}

}  // namespace kestrix::cli
