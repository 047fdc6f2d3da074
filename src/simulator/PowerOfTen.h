#pragma once

namespace kestrix::simulator {

// Exact up to the 22nd.
constexpr double powerOfTen(unsigned exponent) {
    double power = 1;
    while (exponent-- > 0) power *= 10;
    return power;
}

}  // namespace kestrix::simulator
