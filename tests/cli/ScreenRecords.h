#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/Program.h"

namespace kestrix::cli {

// What --screen added to each line.
inline std::vector<nlohmann::ordered_json> screensIn(const std::string& output) {
    std::vector<nlohmann::ordered_json> screens;
    for (const std::string& line : linesOf(output)) {
        const nlohmann::ordered_json record = nlohmann::ordered_json::parse(line, nullptr, false);
        EXPECT_TRUE(record.is_object()) << line;
        if (record.is_object()) screens.push_back(record.at("screen"));
    }
    return screens;
}

inline std::string textOf(const nlohmann::ordered_json& screen, const std::string& label) {
    return screen.at("labels").at(label).at("text");
}

inline bool isHidden(const nlohmann::ordered_json& screen, const std::string& label) {
    return screen.at("labels").at(label).at("hidden");
}

inline std::string rcdValue(int row) {
    return "RCD" + std::to_string(row) + "Value";
}

// The rows whose values are to be seen: "123456" or "4".
inline std::string visibleValues(const nlohmann::ordered_json& screen) {
    std::string rows;
    for (int row = 1; row <= 6; ++row) rows += isHidden(screen, rcdValue(row)) ? "" : std::to_string(row);
    return rows;
}

}  // namespace kestrix::cli
