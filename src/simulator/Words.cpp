#include "simulator/Words.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "simulator/PowerOfTen.h"
#include "simulator/Scenario.h"

namespace kestrix::simulator {

namespace {

constexpr std::size_t kMaxQuoted = 40;
constexpr unsigned kMaxDigits = 15;
constexpr const char* kTooLong = "a duration is at most a day";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string range(std::uint64_t least, std::uint64_t most) {
    return "from " + std::to_string(least) + " to " + std::to_string(most);
}

}  // namespace

std::string inQuotes(std::string_view word) {
    std::string text = "'";
    for (const char c : word.substr(0, kMaxQuoted)) text += c >= ' ' && c <= '~' ? c : '?';
    return text + (word.size() > kMaxQuoted ? "...'" : "'");
}

double Decimal::value() const {
    return static_cast<double>(counts) / powerOfTen(decimals);
}

double Decimal::countsAt(unsigned otherDecimals) const {
    const auto number = static_cast<double>(counts);
    return otherDecimals >= decimals ? number * powerOfTen(otherDecimals - decimals)
                                     : number / powerOfTen(decimals - otherDecimals);
}

std::optional<Decimal> readDecimal(std::string_view word) {
    const bool negative = word.substr(0, 1) == "-";
    if (negative || word.substr(0, 1) == "+") word.remove_prefix(1);
    Decimal number;
    unsigned digits = 0;
    bool point = false;
    for (const char c : word) {
        if (c == '.' && !point) {
            point = true;
        } else if (isDigit(c) && digits < kMaxDigits) {
            number.counts = number.counts * 10 + (c - '0');
            number.decimals += point ? 1 : 0;
            ++digits;
        } else {
            return std::nullopt;
        }
    }
    if (digits == 0) return std::nullopt;
    if (negative) number.counts = -number.counts;
    return number;
}

std::uint64_t Duration::framesAt(std::chrono::nanoseconds period) const {
    if (frames) return *frames;
    return static_cast<std::uint64_t>(std::max<std::int64_t>((time + period / 2) / period, 1));
}

std::chrono::milliseconds Duration::timeAt(std::chrono::nanoseconds period) const {
    if (frames && *frames > static_cast<std::uint64_t>(kMaxDuration / period)) throw StatementError{kTooLong};
    const auto exact = frames ? period * static_cast<std::int64_t>(*frames) : time;
    return std::max(std::chrono::round<std::chrono::milliseconds>(exact), std::chrono::milliseconds{1});
}

Words::Words(std::string_view line) {
    constexpr std::string_view kBlanks = " \t\r";
    for (std::size_t begin = 0;;) {
        begin = line.find_first_not_of(kBlanks, begin);
        if (begin == std::string_view::npos || line[begin] == '#') return;
        const std::size_t end = std::min(line.find_first_of(kBlanks, begin), line.size());
        words_.push_back(line.substr(begin, end - begin));
        begin = end;
    }
}

bool Words::takeIf(std::string_view word) {
    if (atEnd() || words_[next_] != word) return false;
    ++next_;
    return true;
}

std::string_view Words::take(std::string_view what) {
    if (atEnd()) throw StatementError{"expected " + std::string{what} + " at the end of the line"};
    return words_[next_++];
}

void Words::expect(std::string_view word) {
    const std::string_view found = take(inQuotes(word));
    if (found != word) throw StatementError{"expected " + inQuotes(word) + ", not " + inQuotes(found)};
}

void Words::expectEnd() const {
    if (!atEnd()) throw StatementError{"unexpected " + inQuotes(words_[next_])};
}

Decimal Words::takeDecimal(std::string_view what) {
    const std::string_view word = take(what);
    const auto number = readDecimal(word);
    if (!number) throw StatementError{"expected " + std::string{what} + ", not " + inQuotes(word)};
    return *number;
}

std::uint64_t Words::takeWhole(std::string_view what, std::uint64_t least, std::uint64_t most) {
    return wholeNumber(take(what), what, least, most);
}

Duration Words::takeDuration() {
    std::string_view unit = take("a duration");
    const std::string_view first = unit;
    std::string_view number = unit.substr(0, std::min(unit.find_first_not_of("+-.0123456789"), unit.size()));
    unit.remove_prefix(number.size());
    if (unit.empty()) unit = take("'frames', 's' or 'ms'");
    const auto value = readDecimal(number);
    if (!value || (unit != "frames" && unit != "frame" && unit != "s" && unit != "ms")) {
        throw StatementError{"expected a duration such as '12 frames', '3s' or '250ms', not " +
                             inQuotes(!value ? first : unit)};
    }
    if (value->counts <= 0) throw StatementError{"a duration is longer than nothing"};
    if (unit == "frames" || unit == "frame") {
        return {.frames = wholeNumber(number, "a number of frames", 1, kMaxFrames), .time = {}};
    }
    const double seconds = value->value() / (unit == "s" ? 1.0 : 1000.0);
    if (seconds > static_cast<double>(kMaxDuration.count())) {
        throw StatementError{kTooLong};
    }
    return {.frames = std::nullopt,
            .time = std::chrono::nanoseconds{static_cast<std::int64_t>(std::round(seconds * 1e9))}};
}

Pair splitPair(std::string_view word) {
    const std::size_t sign = word.find('=');
    if (sign == 0 || sign == std::string_view::npos || sign + 1 == word.size()) {
        throw StatementError{"expected name=value, not " + inQuotes(word)};
    }
    return {word.substr(0, sign), word.substr(sign + 1)};
}

std::uint64_t wholeNumber(std::string_view word, std::string_view what, std::uint64_t least,
                          std::uint64_t most) {
    const bool hexadecimal = word.substr(0, 2) == "0x";
    const std::string_view digits = hexadecimal ? word.substr(2) : word;
    std::uint64_t number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
    if (error != std::errc{} || end != digits.data() + digits.size() || number < least || number > most) {
        throw StatementError{"expected " + std::string{what} + " " + range(least, most) + ", not " +
                             inQuotes(word)};
    }
    return number;
}

}  // namespace kestrix::simulator
