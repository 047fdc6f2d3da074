#pragma once

#include <chrono>
#include <cstdint>

#include "simulator/Display.h"
#include "simulator/FunctionRules.h"
#include "simulator/Motion.h"
#include "simulator/Words.h"

// The value of one reading, as words and as what the display holds. All throw StatementError.
namespace kestrix::simulator {

inline constexpr std::uint64_t kMaxMagnitude = 65535;

// A value that stands still, in the reading's usual unit; its decimals are those that were written.
void setValue(const Decimal& value, const ReadingRule& rule, Reading& reading, Motion& motion);

// "0.45", ">1999", "<5.0", "dashes" or "overload".
void takeValue(Words& words, const ReadingRule& rule, Reading& reading, Motion& motion);

// "0.00 to 0.45 within 2s", behind "settle" or "ramp".
void takeMovement(MotionKind kind, Words& words, const ReadingRule& rule, Reading& reading, Motion& motion,
                  std::chrono::nanoseconds period);

// The unit, if one follows a value.
void takeUnit(Words& words, const ReadingRule& rule, Reading& reading);

}  // namespace kestrix::simulator
