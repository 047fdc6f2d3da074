#include "protocol/HexText.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace kestrix::protocol {
namespace {

constexpr auto kBytePairs = [] {
    constexpr std::string_view digits = "0123456789abcdef";
    std::array<char, 512> table{};
    for (std::size_t byte = 0; byte < 256; ++byte) {
        table[2 * byte] = digits[byte >> 4];
        table[2 * byte + 1] = digits[byte & 15];
    }
    return table;
}();

using DigitTable = std::array<std::uint8_t, 256>;

constexpr bool isDecimal(std::size_t c) {
    return c >= '0' && c <= '9';
}
constexpr bool isUpperHex(std::size_t c) {
    return c >= 'A' && c <= 'F';
}

// The value of every character, letters counted from `ten`; kept to 8 bits, as the sum will be.
constexpr DigitTable digitsCountedFrom(char ten) {
    DigitTable table{};
    for (std::size_t c = 0; c < table.size(); ++c) {
        const std::size_t value = isDecimal(c) ? c - '0' : c - static_cast<std::size_t>(ten) + 10;
        table[c] = static_cast<std::uint8_t>(value & 0xFF);
    }
    return table;
}
constexpr DigitTable kLowerDigits = digitsCountedFrom('a');
constexpr DigitTable kUpperDigits = digitsCountedFrom('A');
static_assert(kLowerDigits['f'] == 15 && kUpperDigits['F'] == 15 && kLowerDigits['7'] == 7);

std::uint8_t byteOfPair(char highCharacter, char lowCharacter) {
    const auto high = static_cast<std::uint8_t>(highCharacter);
    const auto low = static_cast<std::uint8_t>(lowCharacter);
    const DigitTable& table = isUpperHex(high) ? kUpperDigits : kLowerDigits;
    return static_cast<std::uint8_t>(16 * table[high] + table[low]);
}

}  // namespace

void appendHexText(std::string& text, std::span<const std::uint8_t> bytes) {
    const std::size_t before = text.size();
    text.resize(before + 2 * bytes.size());
    char* out = text.data() + before;
    for (const std::uint8_t byte : bytes) {
        std::memcpy(out, &kBytePairs[std::size_t{2} * byte], 2);
        out += 2;
    }
}

std::size_t bytesFromHexText(std::string_view text, std::span<std::uint8_t> bytes) {
    const std::size_t count = std::min(text.size() / 2, bytes.size());
    for (std::size_t i = 0; i < count; ++i) bytes[i] = byteOfPair(text[2 * i], text[2 * i + 1]);
    return count;
}

}  // namespace kestrix::protocol
