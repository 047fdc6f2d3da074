#pragma once

#include <QStringView>

#include <cstdint>
#include <string>

// The number utilities of the link's interface.
namespace kestrix::link {

// Binary digits without leading zeros; 0 has none.
std::string binaryDigits(std::uint16_t number);

// The value of a binary number that is written with decimal digits: 1011 is 11. Digits are not checked: 12
// is 4.
std::int32_t valueOfDecimalWrittenBinary(std::int64_t written);

// The value of a text of binary digits, 32 bits wide. A character that is no digit counts 0.
std::int64_t valueOfBinaryText(QStringView text);

}  // namespace kestrix::link
