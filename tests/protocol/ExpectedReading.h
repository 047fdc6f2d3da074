#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "protocol/ValData.h"

// How the bytes of one reading become its number and text, and the small things that need no tester function.
namespace kestrix::protocol::expected {

using Frame = std::span<const std::uint8_t>;

std::uint8_t flag(bool on);
std::uint8_t bit(unsigned byte, unsigned position);
unsigned word(Frame frame, std::size_t low);
std::string printed(const char* before, double value, int decimals, const char* after);

void setNumber(ValData& reading, unsigned magnitude, unsigned decimals, bool negative);

// What bit 7 of the attribute byte says.
enum class Bit7 { Sign, ReversedSign, Limit };

// at: the reading's low byte. Returns the unit code.
unsigned setReading(ValData& reading, Frame frame, std::size_t at, Bit7 meaning);

void replaceNumber(ValData& reading);

// The display text; limitPrefix stands before the value of a limit.
std::string shown(const ValData& reading, const char* limitPrefix);

}  // namespace kestrix::protocol::expected
