#pragma once

#include <QRgb>

#include <algorithm>
#include <cmath>

namespace kestrix::testing {

inline double luminance(QRgb colour) {
    const auto linear = [](int level) {
        const double v = level / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

// Contrast ratio of two opaque colours, 1 to 21.
inline double contrast(QRgb a, QRgb b) {
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

}  // namespace kestrix::testing
