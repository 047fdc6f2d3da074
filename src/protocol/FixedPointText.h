#pragma once

#include <cstddef>
#include <cstdint>

// Texts of the tester's numbers, equal to printf's but without it: no format, no locale, no allocation.
namespace kestrix::protocol {

inline constexpr std::size_t kFixedPointTextMax = 24;  // room that either writer may need, in characters

// magnitude divided by ten, decimals times over, in double precision, then signed. A magnitude of 0 is +0.
double fixedPointValue(std::uint16_t magnitude, unsigned decimals, bool negative) noexcept;

// That value with exactly `decimals` (0 to 15) decimals, as printf("%.*f") writes it; a magnitude of 0 has no
// sign. Writes no terminator; returns the length.
std::size_t writeFixedPoint(char* out, std::uint16_t magnitude, unsigned decimals, bool negative) noexcept;

// volts (a reading, a count of volts or a sentinel) as printf("%.0f") or printf("%.1f") writes it; decimals
// is 0 or 1.
std::size_t writeRounded(char* out, double volts, unsigned decimals) noexcept;

}  // namespace kestrix::protocol
