#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/PowerOfTen.h"
#include "simulator/ReadingValue.h"
#include "simulator/Statements.h"

namespace kestrix::simulator::statement {

namespace {

std::uint16_t wholeVolts(std::string_view word, std::string_view name) {
    return static_cast<std::uint16_t>(
        wholeNumber(word, std::string{name} + " in whole volts", 0, kMaxMagnitude));
}

struct WireWords {
    std::optional<std::string_view> linePe, neutralPe, lineNeutral, via;
};

WireWords takeWireWords(Words& words) {
    WireWords wires;
    while (!words.atEnd() && words.peek() != "noise") {
        const Pair pair = splitPair(words.take("a wire voltage"));
        if (pair.name == "L-PE") {
            wires.linePe = pair.value;
        } else if (pair.name == "N-PE") {
            wires.neutralPe = pair.value;
        } else if (pair.name == "L-N") {
            wires.lineNeutral = pair.value;
        } else if (pair.name == "via" && (pair.value == "L-PE" || pair.value == "N-PE")) {
            wires.via = pair.value;
        } else {
            throw StatementError{"unknown wire " + inQuotes(pair.name) + " or value " + inQuotes(pair.value)};
        }
    }
    if (!wires.linePe || !wires.neutralPe || !wires.lineNeutral) {
        throw StatementError{"wires needs L-PE=, N-PE= and L-N="};
    }
    return wires;
}

void showWires(const WireWords& wires, ScenarioBuilder& tester) {
    Display& display = tester.display;
    display.thirdIsLinePe = wires.via != "N-PE";
    const auto third = display.thirdIsLinePe ? *wires.linePe : *wires.neutralPe;
    const auto other = display.thirdIsLinePe ? *wires.neutralPe : *wires.linePe;
    const auto volts = readDecimal(third);
    if (!volts || volts->counts < 0) throw StatementError{"expected a wire voltage, not " + inQuotes(third)};
    setValue(*volts, rulesOf(display.function).readings[2], display.readings[2], tester.motions[2]);
    // The loop function says "no touch-voltage limit" with this reading's dashes.
    if (display.function == Function::Loop) display.readings[2].noData = !tester.touchLimit;
    display.wireA = wholeVolts(other, display.thirdIsLinePe ? "N-PE" : "L-PE");
    display.wireB = wholeVolts(*wires.lineNeutral, "L-N");
    display.wiresPresent = true;
}

}  // namespace

void reading(Words& words, ScenarioBuilder& tester) {
    const FunctionRules& rules = tester.rules();
    const auto index = words.takeWhole("a reading", 1, rules.readings.size()) - 1;
    const ReadingRule& rule = rules.readings[index];
    Reading& shown = tester.display.readings[index];
    Motion& motion = tester.motions[index];

    const MotionKind kind = words.takeIf("settle") ? MotionKind::Settle
                            : words.takeIf("ramp") ? MotionKind::Ramp
                                                   : MotionKind::Still;
    if (kind == MotionKind::Still) {
        takeValue(words, rule, shown, motion);
    } else {
        takeMovement(kind, words, rule, shown, motion, tester.framePeriod());
    }
    takeUnit(words, rule, shown);
    if (words.takeIf("noise")) {
        motion.noise = std::abs(words.takeDecimal("a noise amplitude").countsAt(shown.decimals));
        if (motion.noise > kMaxMagnitude) throw StatementError{"the noise is larger than the display"};
    }
    words.expectEnd();
}

void wires(Words& words, ScenarioBuilder& tester) {
    const FunctionRules& rules = tester.rules();
    if (rules.readings.size() < kReadings) {
        throw StatementError{std::string{rules.name} + " has no wire voltages"};
    }
    tester.mainsNoise = 0;
    if (words.takeIf("off")) {
        tester.display.wiresPresent = false;
    } else {
        showWires(takeWireWords(words), tester);
        if (words.takeIf("noise")) {
            tester.mainsNoise =
                static_cast<std::uint16_t>(words.takeWhole("a noise in whole volts", 0, kMaxMagnitude));
        }
    }
    words.expectEnd();
}

void touchLimit(Words& words, ScenarioBuilder& tester) {
    const FunctionRules& rules = tester.rules();
    const bool loop = tester.display.function == Function::Loop;
    if (!loop && tester.display.function != Function::Rcd) {
        throw StatementError{std::string{rules.name} + " has no touch-voltage limit"};
    }
    const bool dashes = words.takeIf("dashes");
    const std::uint64_t volts =
        dashes ? 0 : words.takeWhole("a touch-voltage limit in whole volts", 0, kMaxMagnitude);
    words.expectEnd();
    tester.touchLimit = !dashes;
    setValue({static_cast<std::int64_t>(volts), 0}, rules.readings[3], tester.display.readings[3],
             tester.motions[3]);
    tester.display.readings[loop ? 2 : 3].noData = dashes;
}

void step(Words& words, ScenarioBuilder& tester) {
    const FunctionRules& rules = tester.rules();
    if (tester.display.function != Function::Rcd) {
        throw StatementError{std::string{rules.name} + " has no automatic test"};
    }
    tester.display.autoStep = static_cast<std::uint8_t>(words.takeWhole("a step", 0, 15));
    words.expectEnd();
}

}  // namespace kestrix::simulator::statement
