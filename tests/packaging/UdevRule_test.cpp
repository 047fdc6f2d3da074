// The rule that lets the person in front of the screen open the tester's serial adapter. Debian 12 has no
// tool that checks one, so it is read here, as its manual page says, and asked about adapters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "tests/packaging/Shell.h"

namespace kestrix {
namespace {

struct Part {
    std::string key, operation, value;
};
using Rule = std::vector<Part>;

constexpr const char* kFile = "packaging/70-kestrix.rules";

// One line is one rule: key operator "value", with commas between. Anything else fails.
std::vector<Rule> rules() {
    static const std::regex part(R"re(^([A-Z]+(?:\{[A-Za-z]+\})?)(==|!=|\+=|=)"([^"\\]*)"(?:, *|$))re");
    std::vector<Rule> all;
    for (const std::string& line : linesOf(projectFile(kFile))) {
        if (line.empty() || line.starts_with("#")) continue;
        Rule rule;
        std::string rest = line;
        for (std::smatch found; std::regex_search(rest, found, part); rest = found.suffix())
            rule.push_back({found[1], found[2], found[3]});
        EXPECT_EQ(rest, "") << "in: " << line;
        all.push_back(rule);
    }
    return all;
}

using Device = std::map<std::string, std::string>;  // as a rule's keys name what it has

bool matches(const std::string& value, const std::string& alternatives) {
    static const std::regex special(R"([*])");
    return std::regex_match(value, std::regex(std::regex_replace(alternatives, special, ".*")));
}

// Whether the rules tag it, or what in them is not understood.
bool isTagged(const Device& device) {
    bool tagged = false;
    std::optional<std::string> sought;
    for (const Rule& rule : rules()) {
        if (sought) {
            if (rule.front().key == "LABEL" && rule.front().value == *sought) sought.reset();
            continue;
        }
        bool holds = true;
        for (const Part& part : rule) {
            const auto known = device.find(part.key);
            const std::string value = known == device.end() ? "" : known->second;
            if (part.operation == "==") holds = holds && matches(value, part.value);
            if (part.operation == "!=") holds = holds && !matches(value, part.value);
            if (!holds || part.operation == "==" || part.operation == "!=") continue;
            if (part.key == "GOTO") {
                sought = part.value;
            } else if (part.key == "TAG") {
                tagged = true;
            }
        }
    }
    EXPECT_FALSE(sought.has_value()) << "no label " << *sought;
    return tagged;
}

Device adapter(const std::string& vendor, const std::string& product) {
    return {{"ACTION", "add"},     {"SUBSYSTEM", "tty"},        {"SUBSYSTEMS", "usb"},
            {"KERNEL", "ttyUSB0"}, {"ATTRS{idVendor}", vendor}, {"ATTRS{idProduct}", product}};
}

TEST(UdevRule, GivesTheTagThatMakesTheRightAndNothingElse) {
    for (const Rule& rule : rules()) {
        for (const Part& part : rule) {
            if (part.operation == "==" || part.operation == "!=" || part.key == "GOTO" || part.key == "LABEL")
                continue;
            EXPECT_EQ(part.key + part.operation + part.value, "TAG+=uaccess");
        }
    }
}

TEST(UdevRule, ComesBeforeTheOneThatTurnsTheTagIntoTheRight) {
    EXPECT_LT(std::filesystem::path(kFile).filename().string(), "73-seat-late.rules");
}

TEST(UdevRule, CoversTheUsualAdaptersAndAPortOverBluetooth) {
    for (const auto& [vendor, product] : std::vector<std::pair<std::string, std::string>>{{"0403", "6001"},
                                                                                          {"0403", "6015"},
                                                                                          {"10c4", "ea60"},
                                                                                          {"1a86", "7523"},
                                                                                          {"1a86", "55d4"},
                                                                                          {"067b", "2303"},
                                                                                          {"067b", "23c3"}})
        EXPECT_TRUE(isTagged(adapter(vendor, product))) << vendor << ":" << product;
    EXPECT_TRUE(isTagged({{"ACTION", "add"}, {"SUBSYSTEM", "tty"}, {"KERNEL", "rfcomm0"}}));
}

TEST(UdevRule, LeavesEverythingElseAsItIs) {
    EXPECT_FALSE(isTagged(adapter("0403", "1234"))) << "an instrument that only has such a chip in it";
    EXPECT_FALSE(isTagged(adapter("2341", "0043"))) << "a board";
    EXPECT_FALSE(isTagged({{"ACTION", "add"}, {"SUBSYSTEM", "tty"}, {"KERNEL", "ttyS0"}}));
    Device other = adapter("0403", "6001");
    other["SUBSYSTEM"] = "usb";
    EXPECT_FALSE(isTagged(other)) << "the bare USB device";
    Device gone = adapter("0403", "6001");
    gone["ACTION"] = "remove";
    EXPECT_FALSE(isTagged(gone));
}

}  // namespace
}  // namespace kestrix
