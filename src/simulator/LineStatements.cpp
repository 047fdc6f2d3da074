#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/FrameEncoder.h"
#include "simulator/Statements.h"

namespace kestrix::simulator::statement {

namespace {

std::chrono::milliseconds takePause(Words& words, const ScenarioBuilder& tester) {
    const auto pause = words.takeDuration().timeAt(tester.framePeriod());
    words.expectEnd();
    return pause;
}

double probability(const Pair& pair) {
    const auto value = readDecimal(pair.value);
    if (!value || value->counts < 0 || value->value() > 1) {
        throw StatementError{std::string{pair.name} + " is a probability from 0 to 1, not " +
                             inQuotes(pair.value)};
    }
    return value->value();
}

std::uint8_t takeByte(Words& words, std::string_view what, std::uint64_t least) {
    return static_cast<std::uint8_t>(words.takeWhole(what, least, 255));
}

}  // namespace

void silence(Words& words, ScenarioBuilder& tester) {
    tester.addPause(Delivery::Silence, takePause(words, tester));
}

void switchOff(Words& words, ScenarioBuilder& tester) {
    tester.addPause(Delivery::SwitchOff, takePause(words, tester));
}

void cut(Words& words, ScenarioBuilder& tester) {
    words.expect("after");
    const auto bytes = static_cast<std::uint32_t>(words.takeWhole("a number of bytes", 0, kFrameBytes));
    words.takeIf("bytes");
    words.expect("off");
    tester.addCut(bytes, takePause(words, tester));
}

void garbage(Words& words, ScenarioBuilder& tester) {
    const auto bytes = static_cast<std::uint32_t>(words.takeWhole("a number of bytes", 1, kMaxGarbage));
    words.takeIf("bytes");
    words.expectEnd();
    tester.addGarbage(bytes);
}

void damage(Words& words, ScenarioBuilder& tester) {
    const std::string_view kind = words.take("'flip', 'drop' or 'insert'");
    Damage fault;
    if (kind == "flip") {
        fault.kind = DamageKind::Flip;
    } else if (kind == "drop") {
        fault.kind = DamageKind::Drop;
    } else if (kind == "insert") {
        fault.kind = DamageKind::Insert;
    } else {
        throw StatementError{"expected 'flip', 'drop' or 'insert', not " + inQuotes(kind)};
    }
    fault.place = words.takeWhole("a byte of the frame", 0, kFrameBytes - 1);
    if (fault.kind == DamageKind::Flip) {
        fault.value = words.atEnd() ? 0xFF : takeByte(words, "the bits to flip", 1);
    } else if (fault.kind == DamageKind::Insert) {
        fault.value = takeByte(words, "the byte to insert", 0);
    }
    words.expectEnd();
    tester.addDamage(fault);
}

void line(Words& words, ScenarioBuilder& tester) {
    LineNoise noise;
    if (words.takeIf("clean")) {
        words.expectEnd();
    } else {
        do {
            const Pair pair = splitPair(words.take("'clean', flip=, drop= or insert="));
            if (pair.name == "flip") {
                noise.flip = probability(pair);
            } else if (pair.name == "drop") {
                noise.drop = probability(pair);
            } else if (pair.name == "insert") {
                noise.insert = probability(pair);
            } else {
                throw StatementError{"the line has no " + inQuotes(pair.name)};
            }
        } while (!words.atEnd());
    }
    tester.line = noise;
}

}  // namespace kestrix::simulator::statement
