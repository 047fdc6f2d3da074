#include <gtest/gtest.h>

#include <set>

#include "Playing.h"

namespace kestrix::simulator {
namespace {

Bytes shown(const std::string& function, const std::string& statement) {
    return frameOf("function " + function + "\n" + statement + "\nshow 1 frame");
}

TEST(ReadingStatement, SendsTheDigitsAndDecimalsThatAreWritten) {
    const Bytes frame = shown("low-ohm", "reading 1 0.460");
    EXPECT_EQ(magnitudeIn(frame, 1), 460);
    EXPECT_EQ(attributeIn(frame, 1), 0x03);
    EXPECT_EQ(frame[25], 0x20) << "only the second reading is still dashes";
    EXPECT_EQ(attributeIn(shown("low-ohm", "reading 1 -0.46"), 1), 0x82);
    EXPECT_EQ(magnitudeIn(shown("low-ohm", "reading 1 65535"), 1), 65535);
}

TEST(ReadingStatement, DashesAndOverload) {
    EXPECT_EQ(shown("low-ohm", "reading 1 5\nreading 2 5\nreading 1 dashes")[25], 0x10);
    EXPECT_EQ(shown("low-ohm", "reading 1 5\nreading 2 overload")[25], 0x02);
    EXPECT_EQ(shown("low-ohm", "reading 1 overload\nreading 2 5\nreading 1 6")[25], 0x00);
}

TEST(ReadingStatement, UnitsByFunction) {
    EXPECT_EQ(attributeIn(shown("insulation", "reading 1 1.85 Gohm"), 1), 0x12);
    EXPECT_EQ(attributeIn(shown("insulation", "reading 1 1 Gohm\nreading 1 1.85"), 1), 0x02)
        << "the usual one";
    EXPECT_EQ(attributeIn(shown("voltage", "reading 1 230"), 1), 0x10);
    EXPECT_EQ(attributeIn(shown("voltage", "reading 1 400 1.2.3"), 1), 0x30);
    EXPECT_EQ(attributeIn(shown("voltage", "reading 1 400 2.1.3"), 1), 0x40);
    EXPECT_EQ(attributeIn(shown("rcd", "reading 1 21.5 mA"), 1), 0x30);
    EXPECT_EQ(attributeIn(shown("rcd", "reading 2 0.4"), 2), 0x31);
    EXPECT_EQ(attributeIn(shown("loop", "reading 2 1.25 code7"), 2), 0x72);
}

TEST(ReadingStatement, Limits) {
    EXPECT_EQ(attributeIn(shown("loop", "reading 1 >1999 ohm"), 1), 0x80);
    EXPECT_EQ(attributeIn(shown("loop", "reading 2 >20.0 kA"), 2), 0x91);
    EXPECT_EQ(attributeIn(shown("rcd", "reading 1 >1999 ms"), 1), 0x80);
    EXPECT_EQ(magnitudeIn(shown("rcd", "reading 1 >1999 ms"), 1), 1999);
    EXPECT_EQ(attributeIn(shown("voltage", "reading 1 <5.0 V"), 1), 0x01);
    EXPECT_EQ(attributeIn(shown("voltage", "reading 1 <5.0"), 1), 0x01);
    EXPECT_EQ(attributeIn(shown("loop", "reading 1 >5\nreading 1 5"), 1), 0x00) << "no limit any more";
}

TEST(ReadingStatement, TheLoopSignIsReversed) {
    EXPECT_EQ(attributeIn(shown("loop", "reading 3 230"), 3), 0x80);
    EXPECT_EQ(attributeIn(shown("loop", "reading 3 -230"), 3), 0x00);
    EXPECT_EQ(attributeIn(shown("loop", "reading 4 50.0"), 4), 0x81);
    EXPECT_EQ(attributeIn(shown("rcd", "reading 3 -230"), 3), 0x80);
}

TEST(ReadingStatement, Errors) {
    const auto error = [](const char* function, const char* line) {
        return errorOf(std::string{"function "} + function + "\n" + line);
    };
    EXPECT_EQ(error("earth", "reading"), "line 2: expected a reading at the end of the line");
    EXPECT_EQ(error("earth", "reading 3 5"), "line 2: expected a reading from 1 to 2, not '3'");
    EXPECT_EQ(error("loop", "reading 5 5"), "line 2: expected a reading from 1 to 4, not '5'");
    EXPECT_EQ(error("earth", "reading 1"), "line 2: expected a value at the end of the line");
    EXPECT_EQ(error("earth", "reading 1 x"), "line 2: expected a value, not 'x'");
    EXPECT_EQ(error("loop", "reading 1 >"), "line 2: expected a value, not '>'");
    EXPECT_EQ(error("earth", "reading 1 65536"),
              "line 2: a value has at most 65535 counts without its point");
    EXPECT_EQ(error("earth", "reading 1 -65536"),
              "line 2: a value has at most 65535 counts without its point");
    EXPECT_EQ(error("rcd", "reading 1 1.25"), "line 2: this reading has at most 1 decimal");
    EXPECT_EQ(error("loop", "reading 1 -1"), "line 2: this reading cannot be negative");
    EXPECT_EQ(error("loop", "reading 1 ramp -1 to 5 within 1s"), "line 2: this reading cannot be negative");
    EXPECT_EQ(error("loop", "reading 1 <5"), "line 2: this reading cannot be a limit with '<'");
    EXPECT_EQ(error("voltage", "reading 1 >5"), "line 2: this reading cannot be a limit with '>'");
    EXPECT_EQ(error("voltage", "reading 1 <5 1.2.3"), "line 2: a limit with '<' has no other unit");
    EXPECT_EQ(error("earth", "reading 1 5 V"), "line 2: unknown unit 'V' for this reading");
    EXPECT_EQ(error("earth", "reading 1 5 ohm more"), "line 2: unexpected 'more'");
    EXPECT_EQ(error("earth", "reading 1 5 noise"),
              "line 2: expected a noise amplitude at the end of the line");
    EXPECT_EQ(error("earth", "reading 1 5.00 noise 700"), "line 2: the noise is larger than the display");
    EXPECT_EQ(error("earth", "reading 1 settle 5 6"), "line 2: expected 'to', not '6'");
    EXPECT_EQ(error("earth", "reading 1 settle 5 to 6"), "line 2: expected 'within' at the end of the line");
    EXPECT_EQ(error("earth", "reading 1 ramp 700 to 0.00 within 1s"),
              "line 2: a movement begins outside what its decimals can show");
}

std::vector<int> magnitudes(const std::string& text) {
    std::vector<int> values;
    for (const Emission& emission : emissionsOf(text)) values.push_back(magnitudeIn(emission.bytes, 1));
    return values;
}

TEST(ReadingStatement, Moves) {
    EXPECT_EQ(magnitudes("function earth\nreading 1 ramp 1 to 0.2 within 1s\nshow 6 frames"),
              (std::vector<int>{10, 8, 6, 4, 2, 2}));
    // e to the power -1.25, -2.5, -3.75 of 1000: 286.5, 82.1, 23.5.
    EXPECT_EQ(magnitudes("function earth\nreading 1 settle 1000 to 0 within 4 frames\nshow 5 frames"),
              (std::vector<int>{1000, 287, 82, 24, 0}));
}

TEST(ReadingStatement, NoiseStaysWithinItsAmplitudeAndFillsIt) {
    const auto values = magnitudes("function earth\nreading 1 5.00 noise 0.03\nshow 500 frames");
    EXPECT_EQ(std::set<int>(values.begin(), values.end()),
              (std::set<int>{497, 498, 499, 500, 501, 502, 503}));
}

TEST(WiresStatement, SendsThemByWayOfEitherReading) {
    const Bytes line = shown("voltage", "wires L-PE=230.4 N-PE=1 L-N=300");
    EXPECT_EQ(magnitudeIn(line, 3), 2304);
    EXPECT_EQ(Bytes(line.begin() + 24, line.begin() + 31), (Bytes{0x09, 0xB0, 0, 1, 0, 0x2C, 1}));
    const Bytes neutral = shown("rcd", "wires L-PE=230 N-PE=1 L-N=229 via=N-PE");
    EXPECT_EQ(magnitudeIn(neutral, 3), 1);
    EXPECT_EQ(Bytes(neutral.begin() + 24, neutral.begin() + 31), (Bytes{0x08, 0xB0, 0, 230, 0, 229, 0}));
    EXPECT_EQ(shown("voltage", "wires L-PE=230 N-PE=1 L-N=229\nwires off")[24], 0);
}

TEST(WiresStatement, LineWandersAgainstBothOthersAlike) {
    for (const char* via : {"L-PE", "N-PE"}) {
        std::set<int> seen;
        const std::string text = std::string{"function voltage\nwires L-PE=230 N-PE=1 L-N=229 via="} + via;
        for (const Emission& emission : emissionsOf(text + " noise 2\nshow 300 frames")) {
            const bool third = emission.bytes[24] == 0x09;
            const int linePe = third ? magnitudeIn(emission.bytes, 3) : emission.bytes[27];
            const int neutralPe = third ? emission.bytes[27] : magnitudeIn(emission.bytes, 3);
            EXPECT_EQ(neutralPe, 1);
            EXPECT_EQ(emission.bytes[29], linePe - 1);
            seen.insert(linePe);
        }
        EXPECT_EQ(seen, (std::set<int>{228, 229, 230, 231, 232})) << via;
    }
}

TEST(WiresStatement, WandersByWholeVoltsWhateverTheDecimals) {
    std::set<int> seen;
    for (const Emission& emission :
         emissionsOf("function rcd\nwires L-PE=230.00 N-PE=0 L-N=230 noise 1\nshow 100 frames")) {
        seen.insert(magnitudeIn(emission.bytes, 3));
    }
    EXPECT_EQ(seen, (std::set<int>{22900, 23000, 23100}));
}

TEST(WiresStatement, EndsTheNoiseOfTheOneBefore) {
    const char* const text =
        "function rcd\nwires L-PE=230 N-PE=0 L-N=230 noise 9\n"
        "wires L-PE=230 N-PE=0 L-N=230\nshow 50 frames";
    for (const Emission& emission : emissionsOf(text)) {
        EXPECT_EQ(emission.bytes[29], 230);
    }
}

TEST(WiresStatement, Errors) {
    EXPECT_EQ(errorOf("function earth\nwires off"), "line 2: earth has no wire voltages");
    EXPECT_EQ(errorOf("function loop\nwires L-PE=1 L-N=1"), "line 2: wires needs L-PE=, N-PE= and L-N=");
    EXPECT_EQ(errorOf("function loop\nwires X=1"), "line 2: unknown wire 'X' or value '1'");
    EXPECT_EQ(errorOf("function loop\nwires via=PE"), "line 2: unknown wire 'via' or value 'PE'");
    EXPECT_EQ(errorOf("function loop\nwires L-PE=x N-PE=0 L-N=1"),
              "line 2: expected a wire voltage, not 'x'");
    EXPECT_EQ(errorOf("function loop\nwires L-PE=-1 N-PE=0 L-N=1"),
              "line 2: expected a wire voltage, not '-1'");
    EXPECT_EQ(errorOf("function loop\nwires L-PE=1 N-PE=0.5 L-N=1"),
              "line 2: expected N-PE in whole volts from 0 to 65535, not '0.5'");
    EXPECT_EQ(errorOf("function loop\nwires L-PE=1 N-PE=0 L-N=1 noise x"),
              "line 2: expected a noise in whole volts from 0 to 65535, not 'x'");
    EXPECT_EQ(errorOf("function loop\nwires off now"), "line 2: unexpected 'now'");
}

TEST(TouchLimitStatement, OfTheLoopFunction) {
    const Bytes frame = shown("loop", "touch-limit 300");
    EXPECT_EQ(magnitudeIn(frame, 4), 300);
    EXPECT_EQ(frame[25], 0x30) << "the third reading has data now";
    EXPECT_EQ(shown("loop", "touch-limit 50\ntouch-limit dashes")[25], 0x70);
}

TEST(TouchLimitStatement, OfTheLoopFunctionInEitherOrderWithWires) {
    const std::string wires = "wires L-PE=230 N-PE=0 L-N=230";
    EXPECT_EQ(shown("loop", wires)[25] & 0x40, 0x40) << "no limit: the third reading says so";
    EXPECT_EQ(shown("loop", wires + "\ntouch-limit 50")[25] & 0x40, 0);
    EXPECT_EQ(shown("loop", "touch-limit 50\n" + wires)[25] & 0x40, 0);
    EXPECT_EQ(shown("loop", "touch-limit 50\nfunction loop\n" + wires)[25] & 0x40, 0x40) << "begun anew";
}

TEST(TouchLimitStatement, OfTheRcdFunction) {
    EXPECT_EQ(shown("rcd", "touch-limit 50")[25], 0x70);
    EXPECT_EQ(magnitudeIn(shown("rcd", "touch-limit 50"), 4), 50);
    EXPECT_EQ(shown("rcd", "touch-limit 50\ntouch-limit dashes")[25], 0xF0);
    EXPECT_EQ(errorOf("function voltage\ntouch-limit 50"), "line 2: voltage has no touch-voltage limit");
    EXPECT_EQ(errorOf("function rcd\ntouch-limit x"),
              "line 2: expected a touch-voltage limit in whole volts from 0 to 65535, not 'x'");
    EXPECT_EQ(errorOf("function rcd\ntouch-limit 50 V"), "line 2: unexpected 'V'");
}

TEST(StepStatement, SendsTheStep) {
    EXPECT_EQ(attributeIn(shown("rcd", "reading 1 2.5\nstep 11"), 1), 0x1B);
    EXPECT_EQ(errorOf("function loop\nstep 1"), "line 2: loop has no automatic test");
    EXPECT_EQ(errorOf("function rcd\nstep 16"), "line 2: expected a step from 0 to 15, not '16'");
    EXPECT_EQ(errorOf("function rcd\nstep 1 2"), "line 2: unexpected '2'");
}

}  // namespace
}  // namespace kestrix::simulator
