#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kestrix::protocol {

// Appends two lower-case hexadecimal digits per byte, without separators.
void appendHexText(std::string& text, std::span<const std::uint8_t> bytes);

// Turns pairs of digits into bytes; an odd last character is dropped, and so are pairs that find no room.
// A low letter is read in the case of its high character: "1a" is 0x1A, "1A" is not (the tester's own rule).
// Any character has a value, so any text gives bytes. Returns the count of bytes written.
std::size_t bytesFromHexText(std::string_view text, std::span<std::uint8_t> bytes);

}  // namespace kestrix::protocol
