#pragma once

#include "simulator/ScenarioBuilder.h"
#include "simulator/Words.h"

// One function per statement of a scenario. Each takes the words behind the statement's own, up to the end of
// the line, and throws StatementError when they make no sense.
namespace kestrix::simulator::statement {

// What the display shows (DisplayStatements.cpp).
void function(Words& words, ScenarioBuilder& tester);
void set(Words& words, ScenarioBuilder& tester);
void on(Words& words, ScenarioBuilder& tester);
void off(Words& words, ScenarioBuilder& tester);

// The values on it (ReadingStatements.cpp).
void reading(Words& words, ScenarioBuilder& tester);
void wires(Words& words, ScenarioBuilder& tester);
void touchLimit(Words& words, ScenarioBuilder& tester);
void step(Words& words, ScenarioBuilder& tester);

// What is sent, and when (FrameStatements.cpp).
void rate(Words& words, ScenarioBuilder& tester);
void repeat(Words& words, ScenarioBuilder& tester);
void show(Words& words, ScenarioBuilder& tester);
void burst(Words& words, ScenarioBuilder& tester);
void bytewise(Words& words, ScenarioBuilder& tester);
void autoSequence(Words& words, ScenarioBuilder& tester);

// What goes wrong on the line (LineStatements.cpp).
void silence(Words& words, ScenarioBuilder& tester);
void switchOff(Words& words, ScenarioBuilder& tester);
void cut(Words& words, ScenarioBuilder& tester);
void garbage(Words& words, ScenarioBuilder& tester);
void damage(Words& words, ScenarioBuilder& tester);
void line(Words& words, ScenarioBuilder& tester);

}  // namespace kestrix::simulator::statement
