#include "simulator/ReadingValue.h"

#include <string>
#include <string_view>

namespace kestrix::simulator {

namespace {

constexpr const char* kNegative = "this reading cannot be negative";

void checkValue(const Decimal& value, const ReadingRule& rule) {
    if (value.counts > static_cast<std::int64_t>(kMaxMagnitude) ||
        value.counts < -static_cast<std::int64_t>(kMaxMagnitude)) {
        throw StatementError{"a value has at most " + std::to_string(kMaxMagnitude) +
                             " counts without its point"};
    }
    if (value.decimals > rule.maxDecimals) {
        throw StatementError{"this reading has at most " + std::to_string(rule.maxDecimals) + " decimal"};
    }
    if (rule.sign == SignRule::Unsigned && value.counts < 0) {
        throw StatementError{kNegative};
    }
}

void setLimit(std::string_view word, const ReadingRule& rule, Reading& reading, Motion& motion) {
    const LimitRule wanted = word.front() == '>' ? LimitRule::AboveByMark : LimitRule::BelowByUnit;
    if (rule.limit != wanted) {
        throw StatementError{"this reading cannot be a limit with " + inQuotes(word.substr(0, 1))};
    }
    const auto value = readDecimal(word.substr(1));
    if (!value) throw StatementError{"expected a value, not " + inQuotes(word)};
    setValue(*value, rule, reading, motion);
    if (wanted == LimitRule::AboveByMark) {
        reading.marked = true;
    } else {
        reading.unitCode = 0;
    }
}

}  // namespace

void setValue(const Decimal& value, const ReadingRule& rule, Reading& reading, Motion& motion) {
    checkValue(value, rule);
    reading = {.magnitude = 0,
               .decimals = static_cast<std::uint8_t>(value.decimals),
               .marked = false,
               .unitCode = rule.units.front().code,
               .noData = false,
               .overload = false};
    motion = {};
    motion.sign = rule.sign;
    motion.from = motion.to = value.countsAt(value.decimals);
}

void takeValue(Words& words, const ReadingRule& rule, Reading& reading, Motion& motion) {
    const std::string_view word = words.take("a value");
    if (word == "dashes" || word == "overload") {
        setValue({0, reading.decimals}, rule, reading, motion);
        (word == "dashes" ? reading.noData : reading.overload) = true;
    } else if (word.front() == '>' || word.front() == '<') {
        setLimit(word, rule, reading, motion);
    } else {
        const auto value = readDecimal(word);
        if (!value) throw StatementError{"expected a value, not " + inQuotes(word)};
        setValue(*value, rule, reading, motion);
    }
}

void takeMovement(MotionKind kind, Words& words, const ReadingRule& rule, Reading& reading, Motion& motion,
                  std::chrono::nanoseconds period) {
    const Decimal from = words.takeDecimal("a value");
    words.expect("to");
    const Decimal to = words.takeDecimal("a value");
    words.expect("within");
    const std::uint64_t frames = words.takeDuration().framesAt(period);
    const double first = from.countsAt(to.decimals);
    const auto limit = static_cast<double>(kMaxMagnitude);
    if (rule.sign == SignRule::Unsigned && first < 0) throw StatementError{kNegative};
    if (first > limit || first < -limit) {
        throw StatementError{"a movement begins outside what its decimals can show"};
    }
    setValue(to, rule, reading, motion);
    motion.kind = kind;
    motion.from = first;
    motion.frames = frames;
}

void takeUnit(Words& words, const ReadingRule& rule, Reading& reading) {
    if (words.atEnd() || words.peek() == "noise") return;
    const std::string_view name = words.take("a unit");
    const auto code = unitCode(rule, name);
    if (!code) throw StatementError{"unknown unit " + inQuotes(name) + " for this reading"};
    const std::uint8_t usual = rule.units.front().code;
    const bool below = rule.limit == LimitRule::BelowByUnit && reading.unitCode != usual;
    if (below && *code != usual) throw StatementError{"a limit with '<' has no other unit"};
    if (!below) reading.unitCode = *code;
}

}  // namespace kestrix::simulator
