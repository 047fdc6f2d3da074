#include "display/MeasurementTexts.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/display/DisplayFixture.h"

namespace kestrix::display {
namespace {

using MeasurementTextsTest = DisplayFixture;

std::string rcdResult(const char* value, const char* multiplier, const char* angle) {
    std::string text;
    appendRcdResult(text, value, multiplier, angle);
    return text;
}

struct Texts {
    std::uint8_t function;
    const char* parameters;
    const char* results;
};

constexpr const char* kEmptyRows =
    "x1/2 0° : ms,x1/2 180°: ms,x1  0° : ms,x1  180°: ms,x5  0° : ms,x5  180°: ms,";

constexpr Texts kTexts[] = {
    {'1', "", "1.23MΩ,45.6V"},
    {'2', "Mode=Auto,Current=30mA,Type=AC,Limit=25V", "1.23MΩ,45.6V"},
    {'3', "Mode=Auto,Current=30mA,Limit=OK", "1.23MΩ,45.6V"},
    {'4', "Mode=Auto", "1.23MΩ,45.6V,L-PE=230V,N-PE=1V,L-N=229V"},
    {'5', "Mode=Auto,Current=30mA,Limit=OK", "1.23MΩ,45.6V,L-PE=230V,N-PE=1V,L-N=229V,UL:50"},
    {'6', "Current=30mA,Type=AC", "Phase=25V,1.23MΩ,L-PE=230V,N-PE=1V,L-N=229V,UF:2.5V,UL:50V"},
    {'7', "Current=30mA,Type=AC",
     "x1/2 0° : ms,x1/2 180°: ms,x1  0° : ms,x1  180°: ms,x5  0° : ms,x5  180°: ms,"
     ",L-PE=230V,N-PE=1V,L-N=229V,UF:2.5V,UL:50V"},
};

// Those of a record whose every text is empty.
constexpr Texts kTextsOfNothing[] = {
    {'1', "", ","},
    {'2', "=,=,=,=", ","},
    {'3', "=,=,=NG", ","},
    {'4', "=", ",,L-PE=V,N-PE=V,L-N=V"},
    {'5', "=,=,=NG", ",,L-PE=V,N-PE=V,L-N=V,"},
    {'6', "=,=", "Phase=,,L-PE=V,N-PE=V,L-N=V,V,V"},
    {'7', "=,=",
     "x1/2 0° : ms,x1/2 180°: ms,x1  0° : ms,x1  180°: ms,x5  0° : ms,x5  180°: ms,"
     ",L-PE=V,N-PE=V,L-N=V,V,V"},
};

TEST_F(MeasurementTextsTest, EveryFunctionHasItsParametersAndResults) {
    for (const Texts& row : kTexts) {
        SCOPED_TRACE(int{row.function});
        receive(recordOf(row.function));
        EXPECT_EQ(display_.parameters, row.parameters);
        EXPECT_EQ(display_.results, row.results);
    }
}

TEST_F(MeasurementTextsTest, MissingTextsAreEmpty) {
    for (const Texts& row : kTextsOfNothing) {
        SCOPED_TRACE(int{row.function});
        protocol::MeterReading record;
        record.iFunction = row.function;
        receive(record);
        EXPECT_EQ(display_.parameters, row.parameters);
        EXPECT_EQ(display_.results, row.results);
    }
}

TEST_F(MeasurementTextsTest, TheTextsAreThoseOfTheLatestRecordOnly) {
    for (const Texts& first : kTexts) {
        for (const Texts& second : kTexts) {
            SCOPED_TRACE(std::to_string(first.function) + " " + std::to_string(second.function));
            receive(recordOf(first.function));
            receive(recordOf(second.function));
            EXPECT_EQ(display_.parameters, second.parameters);
            EXPECT_EQ(display_.results, second.results);
        }
    }
}

TEST_F(MeasurementTextsTest, Functions3And5WithAnEmptyStrF4ValueEndParametersWithNGAndAnyOtherWithOK) {
    for (const std::uint8_t function : {'3', '5'}) {
        protocol::MeterReading record = recordOf(function);
        record.strF4Value = "";
        receive(record);
        EXPECT_EQ(display_.parameters, "Mode=Auto,Current=30mA,Limit=NG");
        for (const char* value : {"ON", "OFF", " ", "NG", "0", "----"}) {
            record.strF4Value = value;
            receive(record);
            EXPECT_EQ(display_.parameters, "Mode=Auto,Current=30mA,Limit=OK") << value;
        }
    }
}

TEST_F(MeasurementTextsTest, ACodeOutside1To7BehindAFunction2RecordKeepsItsParametersAndLeavesResultsEmpty) {
    for (const int code : {0, 1, 7, '0' + 0, '8' + 0, 255}) {
        receive(recordOf('2'));
        EXPECT_NE(display_.results, "");
        protocol::MeterReading record = recordOf(static_cast<std::uint8_t>(code));
        record.strF1Value = "other";
        receive(record);
        EXPECT_EQ(display_.parameters, "Mode=Auto,Current=30mA,Type=AC,Limit=25V") << code;
        EXPECT_EQ(display_.results, "") << code;
    }
}

TEST_F(MeasurementTextsTest, ARowValueOfFourDashesGivesTheRowWithoutANumber) {
    receiveRunning(3, "----");
    EXPECT_EQ(tripTimes(display_), "[----][ ][ ][ ][ ][ ]");
    EXPECT_TRUE(display_.results.starts_with("x1/2 0° :ms,x"));
    EXPECT_EQ(rcdResult("----", "x1/2", "0° :"), "x1/2 0° :ms,");
}

TEST_F(MeasurementTextsTest, EveryOtherRowValueIsUsedAsItIs) {
    EXPECT_EQ(rcdResult("18", "x1/2", "0° :"), "x1/2 0° :18ms,");
    EXPECT_EQ(rcdResult("18", "x1 ", "180°:"), "x1  180°:18ms,");
    EXPECT_EQ(rcdResult(" ", "x5 ", "0° :"), "x5  0° : ms,");
    EXPECT_EQ(rcdResult("", "x5 ", "0° :"), "x5  0° :ms,");
    EXPECT_EQ(rcdResult("---", "x5 ", "0° :"), "x5  0° :---ms,");
    EXPECT_EQ(rcdResult("-----", "x5 ", "0° :"), "x5  0° :-----ms,");
    EXPECT_EQ(rcdResult(">1999", "x1/2", "180°:"), "x1/2 180°:>1999ms,");
}

TEST_F(MeasurementTextsTest, EachRowHasItsMultiplierAndItsAngle) {
    char number = '1';
    for (RcdRow& row : display_.rcdRows) row.value = {'1', number++};
    describeMeasurement(display_, recordOf('7'));
    const std::string rows =
        "x1/2 0° :11ms,x1/2 180°:12ms,x1  0° :13ms,x1  180°:14ms,x5  0° :15ms,x5  180°:16ms,";
    EXPECT_EQ(display_.results, rows + ",L-PE=230V,N-PE=1V,L-N=229V,UF:2.5V,UL:50V");
}

TEST_F(MeasurementTextsTest, TwoCommasStandBehindTheSixthRow) {
    receive(recordOf('7'));
    EXPECT_EQ(display_.results.find(std::string(kEmptyRows) + ",L-PE="), 0U);
}

TEST_F(MeasurementTextsTest, LimitsStandAsTheDecoderSpellsThem) {
    protocol::MeterReading record = recordOf('5');
    record.strUL = "UL:---- V";
    receive(record);
    EXPECT_TRUE(display_.results.ends_with("L-N=229V,UL:---- V"));
    for (const std::uint8_t function : {'6', '7'}) {
        record = recordOf(function);
        record.strUF = "UF:--- ";
        record.strUL = "UL:--- ";
        receive(record);
        EXPECT_TRUE(display_.results.ends_with("L-N=229V,UF:--- V,UL:--- V"));
    }
}

TEST_F(MeasurementTextsTest, TheRowsAreAppendedToWhatIsThere) {
    std::string text = "before,";
    appendRcdResult(text, "18", "x1/2", "0° :");
    EXPECT_EQ(text, "before,x1/2 0° :18ms,");
}

}  // namespace
}  // namespace kestrix::display
