#include "protocol/FixedPointText.h"

#include <array>
#include <charconv>
#include <cstring>

namespace kestrix::protocol {
namespace {

constexpr std::size_t kMagnitudeDigits = 5;  // of 65535

constexpr auto kTwoDigits = [] {
    std::array<char, 200> table{};
    for (std::size_t i = 0; i < 100; ++i) {
        table[2 * i] = static_cast<char>('0' + i / 10);
        table[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return table;
}();
static_assert(kTwoDigits[84] == '4' && kTwoDigits[85] == '2');

const char* twoDigits(std::size_t number) {
    return &kTwoDigits[2 * number];
}

// The five digits of a magnitude, leading zeros included.
void writeDigits(char* out, unsigned magnitude) {
    out[0] = static_cast<char>('0' + magnitude / 10000);
    std::memcpy(out + 1, twoDigits(magnitude % 10000 / 100), 2);
    std::memcpy(out + 3, twoDigits(magnitude % 100), 2);
}

constexpr std::size_t significantDigits(unsigned magnitude) {
    if (magnitude >= 10000) return 5;
    if (magnitude >= 1000) return 4;
    if (magnitude >= 100) return 3;
    return magnitude >= 10 ? 2 : 1;
}

}  // namespace

double fixedPointValue(std::uint16_t magnitude, unsigned decimals, bool negative) noexcept {
    double value = magnitude;
    for (unsigned i = 0; i < decimals; ++i) value /= 10.0;
    return negative && magnitude != 0 ? -value : value;
}

std::size_t writeFixedPoint(char* out, std::uint16_t magnitude, unsigned decimals, bool negative) noexcept {
    char digits[kMagnitudeDigits];
    writeDigits(digits, magnitude);
    const std::size_t count = significantDigits(magnitude);
    const char* first = digits + (kMagnitudeDigits - count);

    char* at = out;
    if (negative && magnitude != 0) *at++ = '-';
    const std::size_t whole = count > decimals ? count - decimals : 0;
    if (whole == 0) {
        *at++ = '0';
    } else {
        std::memcpy(at, first, whole);
        at += whole;
    }
    if (decimals == 0) return static_cast<std::size_t>(at - out);
    *at++ = '.';
    const std::size_t rest = count - whole;
    std::memset(at, '0', decimals - rest);
    at += decimals - rest;
    std::memcpy(at, first + whole, rest);
    at += rest;
    return static_cast<std::size_t>(at - out);
}

std::size_t writeRounded(char* out, double volts, unsigned decimals) noexcept {
    if (decimals == 0 && volts >= 0 && volts <= 65535) {
        const auto whole = static_cast<std::uint16_t>(volts);
        if (static_cast<double>(whole) == volts) return writeFixedPoint(out, whole, 0, false);
    }
    // The precision makes this exact, ties to even, like printf: 0.35 is a little less and becomes 0.3.
    const auto end = std::to_chars(out, out + kFixedPointTextMax, volts, std::chars_format::fixed,
                                   static_cast<int>(decimals));
    return static_cast<std::size_t>(end.ptr - out);
}

}  // namespace kestrix::protocol
