#include "link/NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrix::link {

std::string binaryDigits(std::uint16_t number) {
    std::string text;
    for (unsigned rest = number; rest != 0; rest >>= 1)
        text.insert(text.begin(), static_cast<char>('0' + (rest & 1U)));
    return text;
}

std::int32_t valueOfDecimalWrittenBinary(std::int64_t written) {
    double result = 0;
    double weight = 1;
    std::int64_t rest = written;
    std::int64_t quotient = 0;
    do {
        quotient = rest / 10;
        result = std::trunc(result + weight * static_cast<double>(rest - 10 * quotient));
        weight *= 2;
        rest = static_cast<std::int32_t>(quotient);  // 32 bits wide, whatever the number
    } while (quotient != 0);
    return static_cast<std::int32_t>(result);
}

std::int64_t valueOfBinaryText(QStringView text) {
    std::uint32_t sum = 0;  // wraps at 32 bits
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c <= u'0' || c > u'9') continue;
        const float power = std::pow(2.0F, static_cast<float>(text.size() - 1 - i));
        const double weighed = std::trunc(static_cast<double>(c - u'0') * static_cast<double>(power));
        const double most = std::numeric_limits<std::int32_t>::max();
        sum += static_cast<std::uint32_t>(std::min(weighed, most));
    }
    return static_cast<std::int32_t>(sum);
}

}  // namespace kestrix::link
