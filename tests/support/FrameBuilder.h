#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace kestrix::testing {

// Writes one frame of the tester byte by byte. It starts as a valid frame of the given function ('1' to '6')
// with zeros everywhere else; every setter overwrites its own bytes only.
class FrameBuilder {
  public:
    static constexpr std::size_t kSize = 36;
    using Bytes = std::array<std::uint8_t, kSize>;

    explicit FrameBuilder(char functionCode) {
        bytes_[0] = 0x7E;
        bytes_[1] = 0x0D;
        bytes_[2] = 0x1E;
        bytes_[8] = 0x55;
        bytes_[9] = 0xAA;
        function(functionCode);
    }

    FrameBuilder& function(char code) { return byte(10, static_cast<std::uint8_t>(code)); }

    // n: 1 to 4.
    FrameBuilder& setting(std::size_t n, std::uint8_t value) { return byte(2 + n, value); }

    FrameBuilder& testRunning(std::uint8_t value) { return byte(7, value); }

    // n: 1 to 4.
    FrameBuilder& reading(std::size_t n, std::uint16_t magnitude, std::uint8_t attribute) {
        return word(9 + 3 * n, magnitude).byte(11 + 3 * n, attribute);
    }

    FrameBuilder& status(std::uint8_t value) { return byte(24, value); }
    FrameBuilder& noDataOverload(std::uint8_t value) { return byte(25, value); }
    FrameBuilder& alarm(std::uint8_t value) { return byte(26, value); }

    // Whole volts.
    FrameBuilder& wires(std::uint16_t voltageA, std::uint16_t voltageB) {
        return word(27, voltageA).word(29, voltageB);
    }

    // The bytes that no function looks at.
    FrameBuilder& unusedBytes(std::uint8_t value) {
        byte(11, value);
        std::fill(bytes_.begin() + 31, bytes_.end(), value);
        return *this;
    }

    FrameBuilder& byte(std::size_t position, std::uint8_t value) {
        bytes_.at(position) = value;
        return *this;
    }

    const Bytes& bytes() const { return bytes_; }

    // The frame as the link hands it over: 72 lower-case hexadecimal digits.
    std::string hexText() const { return hexText(bytes_); }

    static std::string hexText(const Bytes& bytes) {
        constexpr char kDigits[] = "0123456789abcdef";
        std::string text;
        for (const unsigned value : bytes) {
            text += kDigits[value / 16];
            text += kDigits[value % 16];
        }
        return text;
    }

  private:
    FrameBuilder& word(std::size_t position, std::uint16_t value) {
        byte(position, static_cast<std::uint8_t>(value % 256));
        return byte(position + 1, static_cast<std::uint8_t>(value / 256));
    }

    Bytes bytes_{};
};

}  // namespace kestrix::testing
