#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tests/cli/Program.h"

namespace kestrix::cli {

// A TCP server on this machine, on a port of its own.
class Listener {
  public:
    Listener();
    std::uint16_t port() const { return port_; }
    std::string uri() const { return "tcp://127.0.0.1:" + std::to_string(port_); }
    // Waits for a client.
    Descriptor accept() const;

  private:
    Descriptor socket_;
    std::uint16_t port_ = 0;
};

// receiveBuffer: in bytes; 0 is what the system gives.
Descriptor connectTo(std::uint16_t port, int receiveBuffer = 0);

// Opens a terminal as a serial port; not open when it is not there.
Descriptor openPort(const std::string& path);

// Waits for so many bytes; fewer when the other end closes before.
std::string receive(const Descriptor& from, std::size_t size);
std::string receiveToEnd(const Descriptor& from);
void sendAll(const Descriptor& to, std::string_view bytes);
// Any descriptor. False when the reader has gone, or takes nothing for longer than only a hang takes.
bool writeAll(const Descriptor& to, std::string_view bytes);

// `simulate --tcp` on a free port.
class SimulatedTester {
  public:
    explicit SimulatedTester(std::vector<std::string> options = {});
    std::uint16_t port() const { return port_; }
    std::string uri() const { return "tcp://127.0.0.1:" + std::to_string(port_); }
    Program& program() { return program_; }

  private:
    Program program_;
    std::uint16_t port_ = 0;
};

}  // namespace kestrix::cli
