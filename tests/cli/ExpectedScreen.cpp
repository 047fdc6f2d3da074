#include "tests/cli/ExpectedScreen.h"

#include <array>
#include <map>

namespace kestrix::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<const char*, 6> kMultipliers{"x1/2", "x1/2", "x1 ", "x1 ", "x5 ", "x5 "};
constexpr std::array<const char*, 6> kAngles{"0° :", "180°:", "0° :", "180°:", "0° :", "180°:"};

std::string rcd(int row, const std::string& part) {
    return "RCD" + std::to_string(row) + part;
}

}  // namespace

ExpectedScreen::ExpectedScreen() {
    screen_ = {{"strfunction", nullptr},
               {"intfunctions", 0},
               {"parameters", ""},
               {"results", ""},
               {"showMode", 0},
               {"lastSubFuncF2", 0},
               {"rcdStep", 0},
               {"title", nullptr},
               {"blueImage", {{"hidden", true}}},
               {"labels", Json::object()}};
    const auto add = [this](const std::string& name, const std::string& shown) {
        screen_["labels"][name] = {{"text", shown}, {"hidden", false}};
    };
    for (const char* name : {"D1Value", "D1Unit", "D2Value", "D2Unit"}) add(name, "");
    for (int row = 1; row <= 6; ++row) {
        add(rcd(row, "Row"), kMultipliers.at(static_cast<std::size_t>(row - 1)));
        add(rcd(row, "Angle"), kAngles.at(static_cast<std::size_t>(row - 1)));
        add(rcd(row, "Value"), " ");
        add(rcd(row, "Unit"), "ms");
    }
}

Json& ExpectedScreen::text(const std::string& label) {
    return screen_["labels"].at(label).at("text");
}

bool ExpectedScreen::hidden(const std::string& label) const {
    return screen_.at("labels").at(label).at("hidden");
}

void ExpectedScreen::hide(const std::string& label, bool hidden) {
    screen_["labels"].at(label).at("hidden") = hidden;
}

void ExpectedScreen::hideReadings(bool hidden) {
    for (const char* label : {"D1Value", "D1Unit", "D2Value", "D2Unit"}) hide(label, hidden);
}

void ExpectedScreen::hideRows(int first, int last, bool hidden) {
    for (int row = first; row <= last; ++row) {
        for (const char* part : {"Row", "Angle", "Unit"}) hide(rcd(row, part), hidden);
    }
}

void ExpectedScreen::hideRcdValues() {
    for (int row = 1; row <= 6; ++row) hide(rcd(row, "Value"), true);
}

void ExpectedScreen::clearRcdValues() {
    for (int row = 1; row <= 6; ++row) text(rcd(row, "Value")) = " ";
}

void ExpectedScreen::showRcdSequence(const Json& record) {
    if (!hidden("D1Value")) {
        clearRcdValues();
        hideReadings(true);
    }
    const int current = record.at("iSubFuncF2");
    if (screen_["lastSubFuncF2"] != current) clearRcdValues();
    screen_["showMode"] = current < 2 ? 3 : 2;
    screen_["lastSubFuncF2"] = current;
    hideRows(1, 4, false);
    hideRows(5, 6, current >= 2);

    int step = record.at("bTest") != 0 ? screen_["rcdStep"].get<int>() + 1 : 0;
    static const std::map<int, int> rowAtStep{{3, 1}, {5, 2}, {7, 3}, {9, 4}, {11, 5}, {13, 6}};
    if (step == 1) clearRcdValues();
    if (const auto found = rowAtStep.find(step); found != rowAtStep.end()) {
        text(rcd(found->second, "Value")) = record.at("strValue1");
        hideRcdValues();
        hide(rcd(found->second, "Value"), false);
    }
    if (step == 13) step = 0;
    screen_["rcdStep"] = step;
}

std::string ExpectedScreen::rcdRows() const {
    std::string rows;
    for (int row = 1; row <= 6; ++row) {
        const auto i = static_cast<std::size_t>(row - 1);
        std::string value = screen_.at("labels").at(rcd(row, "Value")).at("text");
        if (value == "----") value.clear();
        rows += std::string(kMultipliers.at(i)) + " " + kAngles.at(i) + value + "ms,";
    }
    return rows;
}

void ExpectedScreen::receive(const Json& record) {
    const auto field = [&record](const char* name) { return record.at(name).get<std::string>(); };
    const int code = record.at("iFunction");

    static const std::map<int, const char*> titles{{'1', "fun2"}, {'2', "fun1"}, {'3', "fun3"}, {'4', "fun4"},
                                                   {'5', "fun5"}, {'6', "fun6"}, {'7', "fun6"}};
    screen_["title"] = titles.count(code) != 0 ? Json(titles.at(code)) : Json(nullptr);
    screen_["blueImage"]["hidden"] = record.at("bAlarmFlag") == 0;
    screen_["strfunction"] = field("strfunction");
    screen_["intfunctions"] = code;

    if (code == '7') {
        showRcdSequence(record);
    } else {
        screen_["showMode"] = code == '6' ? 1 : 0;
        text("D1Value") = field("strValue1");
        text("D1Unit") = field("strUnit1");
        if (code == '6') {
            hideRcdValues();
            hideReadings(false);
            hide("D2Value", true);
            hide("D2Unit", true);
            hideRows(1, 6, true);
        } else {
            text("D2Value") = field("strValue2");
            text("D2Unit") = field("strUnit2");
            if (hidden("D2Value")) {
                hideReadings(false);
                hideRows(1, 6, true);
            }
            clearRcdValues();
        }
    }

    const auto setting = [&](int n) {
        const std::string stem = "strF" + std::to_string(n);
        return field((stem + "Name").c_str()) + "=" + field((stem + "Value").c_str());
    };
    const auto judged = [&] {
        return field("strF4Name") + "=" + (field("strF4Value").empty() ? "NG" : "OK");
    };
    const std::string first = field("strValue1") + field("strUnit1");
    const std::string both = first + "," + field("strValue2") + field("strUnit2");
    const std::string wires =
        "L-PE=" + field("strLpe") + "V,N-PE=" + field("strNpe") + "V,L-N=" + field("strLn") + "V";
    const std::string limits = field("strUF") + "V," + field("strUL") + "V";
    const std::map<int, std::pair<std::string, std::string>> texts{
        {'1', {"", both}},
        {'2', {setting(1) + "," + setting(2) + "," + setting(3) + "," + setting(4), both}},
        {'3', {setting(1) + "," + setting(2) + "," + judged(), both}},
        {'4', {setting(1), both + "," + wires}},
        {'5', {setting(1) + "," + setting(2) + "," + judged(), both + "," + wires + "," + field("strUL")}},
        {'6',
         {setting(2) + "," + setting(3),
          "Phase=" + field("strF4Value") + "," + first + "," + wires + "," + limits}},
        {'7', {setting(2) + "," + setting(3), rcdRows() + "," + wires + "," + limits}},
    };
    screen_["results"] = "";
    if (const auto found = texts.find(code); found != texts.end()) {
        screen_["parameters"] = found->second.first;
        screen_["results"] = found->second.second;
    }
}

}  // namespace kestrix::cli
