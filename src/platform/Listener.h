#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace kestrix::platform {

// Hears the bytes of one channel, from its first on, and counts the whole frames of the tester among them.
// What a frame is, the platform does not know: whoever makes a source says it.
class Listener {
  public:
    virtual ~Listener() = default;
    // Hears the next bytes; returns how many whole frames ended within them.
    virtual std::size_t hear(std::span<const std::uint8_t> bytes) = 0;
    // How many of the last bytes heard may still belong to a frame that is not whole yet. Bounded, whatever
    // was heard.
    virtual std::size_t undecided() const = 0;
};

// Makes a listener for each channel that is opened.
using ListenerFactory = std::function<std::unique_ptr<Listener>()>;

// For those who look at a line that is not right: every byte counts as a frame.
std::unique_ptr<Listener> makeAnyByteListener();

}  // namespace kestrix::platform
