#include "tests/protocol/ExpectedReading.h"

#include <charconv>
#include <iterator>

namespace kestrix::protocol::expected {

std::uint8_t flag(bool on) {
    return on ? 1 : 0;
}

std::uint8_t bit(unsigned byte, unsigned position) {
    return flag((byte >> position) % 2 == 1);
}

unsigned word(Frame frame, std::size_t low) {
    return frame[low] + 256U * frame[low + 1];
}

std::string printed(const char* before, double value, int decimals, const char* after) {
    char text[64];  // not by printf, which takes the locale's decimal point
    const auto end =
        std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed, decimals);
    return before + std::string(text, end.ptr) + after;
}

void setNumber(ValData& reading, unsigned magnitude, unsigned decimals, bool negative) {
    double value = magnitude;
    for (unsigned i = 0; i < decimals; ++i) {
        value = value / 10;
    }
    if (negative && magnitude > 0) {
        value = -value;
    }
    reading.ValD1 = value;
    reading.pointPosD1 = static_cast<std::uint8_t>(decimals);
    reading.strValD1 = printed("", value, static_cast<int>(decimals), "");
}

unsigned setReading(ValData& reading, Frame frame, std::size_t at, Bit7 meaning) {
    const unsigned attribute = frame[at + 2];
    const bool top = attribute >= 128;
    const bool negative = (meaning == Bit7::Sign && top) || (meaning == Bit7::ReversedSign && !top);
    setNumber(reading, word(frame, at), attribute % 16, negative);
    if (meaning == Bit7::Limit) {
        reading.bLess = flag(top);
    }
    return attribute / 16 % 8;
}

void replaceNumber(ValData& reading) {
    if (reading.NoData == 1) {
        reading.ValD1 = 5000001.0;
    } else if (reading.OlData == 1) {
        reading.ValD1 = 5000002.0;
    }
}

std::string shown(const ValData& reading, const char* limitPrefix) {
    if (reading.OlData == 1) {
        return "OL";
    }
    if (reading.NoData == 1) {
        return "----";
    }
    return reading.bLess == 1 ? limitPrefix + reading.strValD1 : reading.strValD1;
}

}  // namespace kestrix::protocol::expected
