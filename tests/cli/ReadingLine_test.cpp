#include <gtest/gtest.h>

#include <string>

#include "apps/kestrix-cli/TerminalDisplay.h"
#include "tests/cli/ExampleReadings.h"

namespace kestrix::cli {
namespace {

TEST(ReadingLine, EveryFunction) {
    EXPECT_EQ(renderLine(exampleReading('1')), "EARTH  12.34 Ω  205 mA  ZERO=OFF");
    EXPECT_EQ(
        renderLine(exampleReading('2')),
        "INSULATION  > 99.9 MΩ  525 V  Terminal voltage=250v, Beeper=OFF, Lock=ON, Reference=0.125MΩ  LOCK");
    EXPECT_EQ(renderLine(exampleReading('3')),
              "LOW OHM  0.39 Ω  203 mA  Continuty=0.5Ω, Beeper=ON, ZERO=ON  ZERO  BEEP");
    EXPECT_EQ(renderLine(exampleReading('4')),
              "VOLTAGE/PHASE,Voltage  230.4 V  50.0 HZ  V/Phase=L-PE  L-PE=231 V, N-PE=2 V, L-N=229 V");
    EXPECT_EQ(renderLine(exampleReading('5')),
              "LOOP/PFC  0.87 Ω  264 A  Loop/PFC=L-PE, Current=NO Trip, ZERO=OFF"
              "  L-PE=231 V, N-PE=2 V, L-N=229 V  UL=50 V");
    EXPECT_EQ(renderLine(exampleReading('6')),
              "X1  >24.5 mS  RCD=X1, Trip current=30mA, Type Of RCD=AC G, 0°/180°=180°"
              "  L-PE=231 V, N-PE=2 V, L-N=229 V  UL=--- V, UF=0.3 V");
    EXPECT_EQ(renderLine(exampleReading('7')),
              "Auto  18.3 mS  31 mA  x1 180°=18.3 mS  RCD=Auto, Trip current=30mA"
              "  L-PE=231 V, N-PE=2 V, L-N=229 V  UL=50 V, UF=0.7 V");
}

TEST(ReadingLine, NothingDecoded) {
    EXPECT_EQ(renderLine({}), "(no reading)");
}

TEST(ReadingLine, EverySymbol) {
    auto reading = exampleReading('1');
    reading.bHoldFlag = reading.bLockFlag = reading.bCalFlag = reading.bBeepFlag = 1;
    reading.bAlarmFlag = reading.bWarnFlag = reading.bTestFlag = 1;
    EXPECT_EQ(renderLine(reading),
              "EARTH  12.34 Ω  205 mA  ZERO=ON  HOLD  LOCK  ZERO  BEEP  ALARM  WARN  TEST");
}

TEST(ReadingLine, SlotsWithoutANumber) {
    auto reading = exampleReading('7');
    reading.x120.NoData = 1;
    reading.x50.OlData = 1;
    reading.x5180 = {40, "40", 0, "mS", 0, 0, 1};
    EXPECT_NE(renderLine(reading).find("x1/2 0°=----, x1 180°=18.3 mS, x5 0°=OL, x5 180°=>40 mS"),
              std::string::npos)
        << renderLine(reading);
}

TEST(ReadingLine, IsOneLineWithoutEscapeCodes) {
    auto reading = exampleReading('5');
    for (auto* text : {&reading.strfunction, &reading.strValue1, &reading.strUnit2, &reading.strF1Name,
                       &reading.strF2Value, &reading.strLn, &reading.strUL}) {
        text->insert(1, "\n\x1b[2J\r\x9b");
    }
    const auto line = renderLine(reading);
    for (const char c : line) EXPECT_TRUE(static_cast<unsigned char>(c) >= ' ' && c != '\x7f');
    EXPECT_EQ(line.find('\x9b'), std::string::npos);
}

TEST(ReadingLine, FollowsTheReadingAndNothingElse) {
    auto reading = exampleReading('3');
    EXPECT_EQ(renderLine(reading), renderLine(exampleReading('3')));
    reading.strValue1 = "0.40";
    EXPECT_NE(renderLine(reading), renderLine(exampleReading('3')));
}

}  // namespace
}  // namespace kestrix::cli
