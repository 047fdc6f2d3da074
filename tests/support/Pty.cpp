#include "tests/support/Pty.h"

#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>

namespace kestrix::testing {

Pty::Pty() {
    termios raw{};
    cfmakeraw(&raw);
    int slave = -1;
    char name[128] = {};
    if (openpty(&master_, &slave, name, &raw, nullptr) != 0) throw std::runtime_error("no pseudo terminal");
    close(slave);
    name_ = name;
}

bool Pty::send(std::span<const std::uint8_t> bytes) const {
    return write(master_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

void Pty::hangUp() {
    if (master_ >= 0) close(master_);
    master_ = -1;
}

}  // namespace kestrix::testing
