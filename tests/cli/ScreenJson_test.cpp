#include "apps/kestrix-cli/ScreenJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "display/Steps.h"
#include "tests/cli/ExampleReadings.h"

namespace kestrix::cli {
namespace {

using nlohmann::ordered_json;

// A display in a process that has shown nothing yet.
class ScreenJson : public ::testing::Test {
  protected:
    void show(const protocol::MeterReading& reading) { display::recordCame(display_, reading); }
    std::string text() const {
        std::string out;
        appendScreenJson(out, display_);
        return out;
    }
    ordered_json parsed() const { return ordered_json::parse(text()); }

    display::Display display_ = connectedDisplay();
};

std::string label(const std::string& name, const std::string& text, bool hidden) {
    return "\"" + name + R"(":{"text":")" + text + R"(","hidden":)" + (hidden ? "true" : "false") + "}";
}

// The 24 labels of the RCD rows, all with the value " ": rows and values are visible or not.
std::string emptyRcdRows(bool rowsHidden, bool valuesHidden) {
    const std::vector<std::pair<std::string, std::string>> rows{{"x1/2", "0° :"}, {"x1/2", "180°:"},
                                                                {"x1 ", "0° :"},  {"x1 ", "180°:"},
                                                                {"x5 ", "0° :"},  {"x5 ", "180°:"}};
    std::string all;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string stem = "RCD" + std::to_string(i + 1);
        all += "," + label(stem + "Row", rows[i].first, rowsHidden);
        all += "," + label(stem + "Angle", rows[i].second, rowsHidden);
        all += "," + label(stem + "Value", " ", valuesHidden);
        all += "," + label(stem + "Unit", "ms", rowsHidden);
    }
    return all;
}

TEST_F(ScreenJson, BeforeTheFirstRecordAllLabelsAreVisibleAndNoTitleIsLit) {
    EXPECT_EQ(
        text(),
        R"({"strfunction":null,"intfunctions":0,"parameters":"","results":"","showMode":0,"lastSubFuncF2":0,)"
        R"("rcdStep":0,"title":null,"blueImage":{"hidden":true},"labels":{)"
        R"("D1Value":{"text":"","hidden":false},"D1Unit":{"text":"","hidden":false},)"
        R"("D2Value":{"text":"","hidden":false},"D2Unit":{"text":"","hidden":false},)"
        R"("RCD1Row":{"text":"x1/2","hidden":false},"RCD1Angle":{"text":"0° :","hidden":false},)"
        R"("RCD1Value":{"text":" ","hidden":false},"RCD1Unit":{"text":"ms","hidden":false},)"
        R"("RCD2Row":{"text":"x1/2","hidden":false},"RCD2Angle":{"text":"180°:","hidden":false},)"
        R"("RCD2Value":{"text":" ","hidden":false},"RCD2Unit":{"text":"ms","hidden":false},)"
        R"("RCD3Row":{"text":"x1 ","hidden":false},"RCD3Angle":{"text":"0° :","hidden":false},)"
        R"("RCD3Value":{"text":" ","hidden":false},"RCD3Unit":{"text":"ms","hidden":false},)"
        R"("RCD4Row":{"text":"x1 ","hidden":false},"RCD4Angle":{"text":"180°:","hidden":false},)"
        R"("RCD4Value":{"text":" ","hidden":false},"RCD4Unit":{"text":"ms","hidden":false},)"
        R"("RCD5Row":{"text":"x5 ","hidden":false},"RCD5Angle":{"text":"0° :","hidden":false},)"
        R"("RCD5Value":{"text":" ","hidden":false},"RCD5Unit":{"text":"ms","hidden":false},)"
        R"("RCD6Row":{"text":"x5 ","hidden":false},"RCD6Angle":{"text":"180°:","hidden":false},)"
        R"("RCD6Value":{"text":" ","hidden":false},"RCD6Unit":{"text":"ms","hidden":false}}})");
}

// What a first record of the function puts there, to the letter.
struct FirstRecord {
    char function;
    std::string beforeBlueImage;  // from strfunction to title
    std::string readings;         // the labels of the two readings
    bool rowsHidden = false;
    bool valuesHidden = false;
};

void PrintTo(const FirstRecord& expected, std::ostream* out) {
    *out << "function " << expected.function;
}

class ScreenJsonOf : public ScreenJson, public ::testing::WithParamInterface<FirstRecord> {};

TEST_P(ScreenJsonOf, AFunctionIsToTheLetter) {
    protocol::MeterReading reading = exampleReading(GetParam().function);
    for (const bool alarm : {false, true}) {
        reading.bAlarmFlag = alarm ? 1 : 0;
        show(reading);
        EXPECT_EQ(text(), "{" + GetParam().beforeBlueImage + R"(,"blueImage":{"hidden":)" +
                              (alarm ? "false" : "true") + R"(},"labels":{)" + GetParam().readings +
                              emptyRcdRows(GetParam().rowsHidden, GetParam().valuesHidden) + "}}");
    }
}

const std::vector<FirstRecord> kFirstRecords{
    {'1',
     R"("strfunction":"EARTH","intfunctions":49,"parameters":"","results":"12.34Ω,205mA",)"
     R"("showMode":0,"lastSubFuncF2":0,"rcdStep":0,"title":"fun2")",
     R"("D1Value":{"text":"12.34","hidden":false},"D1Unit":{"text":"Ω","hidden":false},)"
     R"("D2Value":{"text":"205","hidden":false},"D2Unit":{"text":"mA","hidden":false})"},
    {'2',
     R"("strfunction":"INSULATION","intfunctions":50,)"
     R"("parameters":"Terminal voltage=250v,Beeper=OFF,Lock=ON,Reference=0.125MΩ",)"
     R"("results":"> 99.9MΩ,525V","showMode":0,"lastSubFuncF2":0,"rcdStep":0,"title":"fun1")",
     R"("D1Value":{"text":"> 99.9","hidden":false},"D1Unit":{"text":"MΩ","hidden":false},)"
     R"("D2Value":{"text":"525","hidden":false},"D2Unit":{"text":"V","hidden":false})"},
    {'3',
     R"("strfunction":"LOW OHM","intfunctions":51,"parameters":"Continuty=0.5Ω,Beeper=ON,ZERO=OK",)"
     R"("results":"0.39Ω,203mA","showMode":0,"lastSubFuncF2":0,"rcdStep":0,"title":"fun3")",
     R"("D1Value":{"text":"0.39","hidden":false},"D1Unit":{"text":"Ω","hidden":false},)"
     R"("D2Value":{"text":"203","hidden":false},"D2Unit":{"text":"mA","hidden":false})"},
    {'4',
     R"("strfunction":"VOLTAGE/PHASE,Voltage","intfunctions":52,"parameters":"V/Phase=L-PE",)"
     R"("results":"230.4V,50.0HZ,L-PE=231V,N-PE=2V,L-N=229V",)"
     R"("showMode":0,"lastSubFuncF2":0,"rcdStep":0,"title":"fun4")",
     R"("D1Value":{"text":"230.4","hidden":false},"D1Unit":{"text":"V","hidden":false},)"
     R"("D2Value":{"text":"50.0","hidden":false},"D2Unit":{"text":"HZ","hidden":false})"},
    {'5',
     R"("strfunction":"LOOP/PFC","intfunctions":53,"parameters":"Loop/PFC=L-PE,Current=NO Trip,ZERO=NG",)"
     R"("results":"0.87Ω,264A,L-PE=231V,N-PE=2V,L-N=229V,UL:50 V",)"
     R"("showMode":0,"lastSubFuncF2":0,"rcdStep":0,"title":"fun5")",
     R"("D1Value":{"text":"0.87","hidden":false},"D1Unit":{"text":"Ω","hidden":false},)"
     R"("D2Value":{"text":"264","hidden":false},"D2Unit":{"text":"A","hidden":false})"},
    {'6',
     R"("strfunction":"X1","intfunctions":54,"parameters":"Trip current=30mA,Type Of RCD=AC G",)"
     R"("results":"Phase=180°,>24.5mS,L-PE=231V,N-PE=2V,L-N=229V,UF:0.3V,UL:--- V",)"
     R"("showMode":1,"lastSubFuncF2":0,"rcdStep":0,"title":"fun6")",
     R"("D1Value":{"text":">24.5","hidden":false},"D1Unit":{"text":"mS","hidden":false},)"
     R"("D2Value":{"text":"","hidden":true},"D2Unit":{"text":"","hidden":true})",
     true, true},
    {'7',
     R"("strfunction":"Auto","intfunctions":55,"parameters":"Trip current=30mA,=",)"
     R"("results":"x1/2 0° : ms,x1/2 180°: ms,x1  0° : ms,x1  180°: ms,x5  0° : ms,x5  180°: ms,,)"
     R"(L-PE=231V,N-PE=2V,L-N=229V,UF:0.7V,UL:50V",)"
     R"("showMode":3,"lastSubFuncF2":0,"rcdStep":0,"title":"fun6")",
     R"("D1Value":{"text":"","hidden":true},"D1Unit":{"text":"","hidden":true},)"
     R"("D2Value":{"text":"","hidden":true},"D2Unit":{"text":"","hidden":true})"},
};

INSTANTIATE_TEST_SUITE_P(Functions, ScreenJsonOf, ::testing::ValuesIn(kFirstRecords));

TEST_F(ScreenJson, TheStateOfTheProcessIsPartOfIt) {
    display_.counters = {-2147483647 - 1, 255, 12};
    EXPECT_EQ(parsed().at("showMode"), -2147483648LL);
    EXPECT_EQ(parsed().at("lastSubFuncF2"), 255);
    EXPECT_EQ(parsed().at("rcdStep"), 12);
}

// Every part of the value changes the labels that stand for it, and no other.
TEST_F(ScreenJson, EveryPartOfTheValueHasItsLabels) {
    struct Part {
        std::string name;
        std::string* text;  // none where the text is always the same
        bool* hidden;
    };
    std::vector<Part> parts{{"D1Value", &display_.first.value, &display_.first.hidden},
                            {"D1Unit", &display_.first.unit, &display_.first.hidden},
                            {"D2Value", &display_.second.value, &display_.second.hidden},
                            {"D2Unit", &display_.second.unit, &display_.second.hidden}};
    for (std::size_t i = 0; i < display_.rcdRows.size(); ++i) {
        display::RcdRow& row = display_.rcdRows[i];
        const std::string stem = "RCD" + std::to_string(i + 1);
        parts.push_back({stem + "Row", nullptr, &row.hidden});
        parts.push_back({stem + "Angle", nullptr, &row.hidden});
        parts.push_back({stem + "Value", &row.value, &row.valueHidden});
        parts.push_back({stem + "Unit", nullptr, &row.hidden});
    }
    ASSERT_EQ(parsed().at("labels").size(), parts.size());
    for (const Part& changed : parts) {
        SCOPED_TRACE(changed.name);
        ordered_json expected = parsed();
        *changed.hidden = true;
        if (changed.text != nullptr) {
            *changed.text = "text of " + changed.name;
            expected["labels"].at(changed.name)["text"] = *changed.text;
        }
        for (const Part& part : parts) {
            if (part.hidden == changed.hidden) expected["labels"].at(part.name)["hidden"] = true;
        }
        EXPECT_EQ(parsed(), expected);
        *changed.hidden = false;
    }
}

// Longer than any room that is made beforehand, and every character escaped.
TEST_F(ScreenJson, LongTextsAreWhole) {
    const std::string text(20'000, '\x01');
    display_.results = display_.first.value = display_.rcdRows[5].value = text;
    const ordered_json screen = parsed();
    EXPECT_EQ(screen.at("results"), text);
    EXPECT_EQ(screen.at("labels").at("D1Value").at("text"), text);
    EXPECT_EQ(screen.at("labels").at("RCD6Value").at("text"), text);
}

// All that stands there beside the texts fits into the room for it, in every state.
TEST_F(ScreenJson, TheLongestNumbersAndWordsHaveRoom) {
    display_.counters = {-2147483647 - 1, -2147483647 - 1, -2147483647 - 1};
    display_.intfunctions = -2147483647 - 1;
    display_.title = display::Title::Rcd;
    display_.rcdRows = {};
    EXPECT_LT(text().size(), 2560U - 256U);
}

TEST_F(ScreenJson, TextsKeepTheirCharacters) {
    const std::string text = "\"quoted\" \\ \n\t\x01 Ω 0° 😀";
    protocol::MeterReading reading = exampleReading('2');
    reading.strfunction = reading.strValue1 = reading.strF1Value = text;
    show(reading);
    const ordered_json screen = parsed();
    EXPECT_EQ(screen.at("strfunction"), text);
    EXPECT_EQ(screen.at("labels").at("D1Value").at("text"), text);
    EXPECT_EQ(screen.at("results"), text + "MΩ,525V");
    EXPECT_THAT(screen.at("parameters").get<std::string>(), ::testing::HasSubstr("voltage=" + text + ","));
}

TEST_F(ScreenJson, StandsBehindWhatIsThereOnOneLine) {
    std::string out = "before";
    appendScreenJson(out, display_);
    EXPECT_EQ(out, "before" + text());
    EXPECT_EQ(out.find('\n'), std::string::npos);
}

}  // namespace
}  // namespace kestrix::cli
