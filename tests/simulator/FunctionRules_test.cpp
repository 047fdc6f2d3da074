#include "simulator/FunctionRules.h"

#include <gtest/gtest.h>

namespace kestrix::simulator {
namespace {

TEST(FunctionRules, NamesInTheOrderOfTheirCodes) {
    const char* const names[] = {"earth", "insulation", "low-ohm", "voltage", "loop", "rcd"};
    for (std::size_t i = 0; i < kFunctions; ++i) {
        EXPECT_EQ(functionNamed(names[i]), static_cast<Function>(i));
        EXPECT_EQ(rulesOf(static_cast<Function>(i)).name, names[i]);
    }
    EXPECT_EQ(functionNamed("Earth"), std::nullopt);
}

TEST(FunctionRules, UnitCodes) {
    const auto code = [](Function function, std::size_t reading, const char* name) {
        return unitCode(rulesOf(function).readings[reading - 1], name);
    };
    EXPECT_EQ(code(Function::Earth, 1, "ohm"), 0);
    EXPECT_EQ(code(Function::Earth, 2, "mA"), 0);
    EXPECT_EQ(code(Function::Insulation, 1, "Mohm"), 0);
    EXPECT_EQ(code(Function::Insulation, 1, "GΩ"), 1);
    EXPECT_EQ(code(Function::LowOhm, 1, "Ω"), 0);
    EXPECT_EQ(code(Function::Voltage, 1, "V"), 1);
    EXPECT_EQ(code(Function::Voltage, 1, "---"), 2);
    EXPECT_EQ(code(Function::Voltage, 1, "1.2.3"), 3);
    EXPECT_EQ(code(Function::Voltage, 1, "2.1.3"), 4);
    EXPECT_EQ(code(Function::Voltage, 2, "kHz"), 1);
    EXPECT_EQ(code(Function::Loop, 1, "mohm"), 1);
    EXPECT_EQ(code(Function::Loop, 2, "A"), 0);
    EXPECT_EQ(code(Function::Loop, 2, "kA"), 1);
    EXPECT_EQ(code(Function::Loop, 2, "ohm"), 4);
    EXPECT_EQ(code(Function::Rcd, 1, "ms"), 0);
    EXPECT_EQ(code(Function::Rcd, 1, "mA"), 1);
    EXPECT_EQ(code(Function::Rcd, 2, "V"), 3);
    EXPECT_EQ(code(Function::Rcd, 2, "mA"), 0);
    EXPECT_EQ(code(Function::Rcd, 2, "code6"), 6);
    EXPECT_EQ(code(Function::Rcd, 2, "code8"), std::nullopt);
    EXPECT_EQ(code(Function::Rcd, 2, "code"), std::nullopt);
    EXPECT_EQ(code(Function::Earth, 1, "Mohm"), std::nullopt);
}

TEST(FunctionRules, EachRcdModeHasItsOwnListOfCurrents) {
    for (const auto mode : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{2}}) {
        EXPECT_EQ(tripCurrentIndex(mode, "1000"), 5) << +mode;
        EXPECT_EQ(tripCurrentIndex(mode, "10"), 6) << +mode;
    }
    for (const auto mode : {std::uint8_t{3}, std::uint8_t{5}}) {
        EXPECT_EQ(tripCurrentIndex(mode, "650"), 4) << +mode;
        EXPECT_EQ(tripCurrentIndex(mode, "10"), 5) << +mode;
        EXPECT_EQ(tripCurrentIndex(mode, "1000"), std::nullopt) << +mode;
    }
    EXPECT_EQ(tripCurrentIndex(4, "10"), 2);
    EXPECT_EQ(tripCurrentIndex(4, "300"), std::nullopt);
    EXPECT_EQ(tripCurrentIndex(6, "30"), std::nullopt);
}

}  // namespace
}  // namespace kestrix::simulator
