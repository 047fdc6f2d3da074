#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kestrix::testing {

// A pair of raw terminals: the test holds the tester's end, a program opens the other by its name.
class Pty {
  public:
    Pty();
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;
    ~Pty() { hangUp(); }

    const std::string& name() const { return name_; }
    int master() const { return master_; }
    // True when all of it was taken.
    bool send(std::span<const std::uint8_t> bytes) const;
    void hangUp();

  private:
    int master_ = -1;
    std::string name_;
};

}  // namespace kestrix::testing
