#pragma once

#include <cstdint>
#include <string>

namespace kestrix::protocol {

// What ValD1 holds when the tester shows no number. Both are out of every real range; compare them exactly.
inline constexpr double kNoDataValue = 5000001.0;
inline constexpr double kOverloadValue = 5000002.0;

// One reading of the tester's display.
struct ValData {
    double ValD1 = 0;             // in strUnitD1; kNoDataValue or kOverloadValue when there is no number
    std::string strValD1;         // ValD1 with exactly pointPosD1 decimals, UTF-8
    std::uint8_t pointPosD1 = 0;  // decimals, 0 to 15
    std::string strUnitD1;        // unit or qualifier; empty when the frame's unit code is unknown
    std::uint8_t NoData = 0;      // 0/1: the tester shows dashes
    std::uint8_t OlData = 0;      // 0/1: the tester shows overload
    std::uint8_t bLess = 0;       // 0/1: the value is a limit

    bool operator==(const ValData&) const = default;
};

}  // namespace kestrix::protocol
