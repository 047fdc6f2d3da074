// docs/frame-format.md is executed here: its tables are held against the decoder, its examples are decoded.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "protocol/DisplayTexts.h"
#include "protocol/FrameLayout.h"
#include "protocol/KV3820protocal.h"
#include "tests/flow/FrameFormatPage.h"
#include "tests/flow/RecordFields.h"
#include "tests/support/FrameBuilder.h"

namespace kestrix::protocol {
namespace {

using namespace testing;  // NOLINT: every helper here is of the tests

const ValData& readingOf(const MeterReading& record, std::size_t n) {
    return record.*kSlots.at("ValData" + std::to_string(n));
}

MeterReading decoded(const FrameBuilder& frame) {
    return KV3820protocal{}.initFromNSdata(frame.bytes()).getAllDataStructValue();
}

// A frame of the function that is neither the automatic sequence nor the rising current.
FrameBuilder frameOf(char code) {
    return FrameBuilder(code).setting(1, 1);
}

TEST(FrameFormatDocument, TheByteRulerIsTheLayout) {
    const std::vector<Row> rows = table("| Bytes | Content |");
    ASSERT_EQ(rows.size(), frame::kRows.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::vector<std::size_t> bytes = numbers(rows[i][0]);
        EXPECT_EQ(bytes.front(), frame::kRows[i].first) << rows[i][0];
        EXPECT_EQ(bytes.size(), frame::kRows[i].length) << rows[i][0];
        for (const std::size_t byte : bytes) EXPECT_EQ(byte, next++);
    }
    EXPECT_EQ(next, frame::kLength);
}

TEST(FrameFormatDocument, ThePictureOfTheRulerShowsEveryByteOnce) {
    std::vector<std::string> positions;
    std::vector<std::string> labels;
    for (const std::string& line : document()) {
        const bool byteLine = line.starts_with("byte ");
        if (!byteLine && !line.starts_with("hex ")) continue;
        std::istringstream words(line.substr(4));
        for (std::string word; words >> word;) (byteLine ? positions : labels).push_back(word);
    }
    ASSERT_EQ(positions.size(), frame::kLength);
    ASSERT_EQ(labels.size(), frame::kLength);
    for (std::size_t i = 0; i < positions.size(); ++i) EXPECT_EQ(positions[i], std::to_string(i));
    EXPECT_EQ(std::stoul(labels[frame::kStart3.first], nullptr, 16), frame::kStart3Value);
    EXPECT_EQ(std::stoul(labels[frame::kMarker.first], nullptr, 16), frame::kMarkerValue[0]);
    EXPECT_EQ(std::stoul(labels[frame::kMarker.first + 1], nullptr, 16), frame::kMarkerValue[1]);
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const bool unused = i == frame::kUnused.first || i >= frame::kTail.first;
        EXPECT_EQ(labels[i] == "..", unused) << i;
    }
}

// "24.3", "4 = 1", "6 = 0x31", "3" or "-".
unsigned expectedOf(const std::string& cell, std::size_t byte, unsigned value) {
    if (cell == "-" || std::stoul(cell) != byte) return 0;
    if (const std::size_t dot = cell.find('.'); dot != std::string::npos)
        return value >> std::stoul(cell.substr(dot + 1)) & 1U;
    if (const std::size_t equals = cell.find("= "); equals != std::string::npos)
        return value == std::stoul(cell.substr(equals + 2), nullptr, 0) ? 1 : 0;
    return value;
}

TEST(FrameFormatDocument, FlagsAndSettingsComeFromTheirBytesAlone) {
    const std::vector<Row> rows =
        table("| Field | EARTH | INSULATION | LOW OHM | VOLTAGE/PHASE | LOOP/PFC | RCD |");
    EXPECT_EQ(rows.size(), 13U);
    for (std::size_t function = 1; function <= 6; ++function) {
        const char code = static_cast<char>('0' + function);
        for (std::size_t byte = 0; byte < FrameBuilder::kSize; ++byte) {
            if (byte == 2 || (byte >= 8 && byte <= 10)) continue;  // the frame check's
            for (unsigned value = 1; value < 256; ++value) {
                const MeterReading record =
                    decoded(FrameBuilder(code).byte(byte, static_cast<std::uint8_t>(value)));
                for (const Row& row : rows) {
                    ASSERT_EQ(fieldOf(record, plain(row[0])), shown(expectedOf(row[function], byte, value)))
                        << row[0] << " of function " << code << ", byte " << byte << " = " << value;
                }
            }
        }
    }
}

struct Meaning {
    std::string unit;
    std::string less;
    std::string noData;
};

// "0 `V` limit, 1 `V`, others empty"
std::map<std::string, Meaning> meaningsOf(const std::string& cell) {
    std::map<std::string, Meaning> all;
    for (const std::string& part : split(cell)) {
        static const std::regex form(R"((\d|others|always) (`[^`]*`|blank|empty)( limit)?( no data)?)");
        std::smatch match;
        if (!std::regex_match(part, match, form)) {
            ADD_FAILURE() << part;
            continue;
        }
        const std::string code = match[1] == "always" ? "others" : match[1].str();
        all[code] = {plain(match[2]), match[3].matched ? "1" : "", match[4].matched ? "1" : ""};
    }
    return all;
}

TEST(FrameFormatDocument, ReadingsHaveTheirUnitsSignsAndDecimals) {
    const std::vector<Row> rows = table("| Function | Reading | Bit 7 | Unit by unit code |");
    EXPECT_EQ(rows.size(), 18U);
    std::set<std::pair<std::string, std::string>> seen;
    for (const Row& row : rows) {
        SCOPED_TRACE(row[0] + " reading " + row[1]);
        EXPECT_TRUE(seen.insert({row[0], row[1]}).second);
        const char code = plain(row[0]).at(0);
        const std::size_t n = std::stoul(row[1]);
        const bool rcdMain = code == '6' && n == 1;
        const auto reading = [&](unsigned attribute) {
            return readingOf(decoded(frameOf(code).reading(n, 123, static_cast<std::uint8_t>(attribute))), n);
        };
        const auto meanings = meaningsOf(row[3]);
        for (unsigned unit = 0; unit < (rcdMain ? 4U : 8U); ++unit) {
            const auto own = meanings.find(std::to_string(unit));
            const Meaning& meaning = own != meanings.end() ? own->second : meanings.at("others");
            const ValData actual = reading(unit << (rcdMain ? 5U : 4U));
            EXPECT_EQ(actual.strUnitD1, meaning.unit) << unit;
            EXPECT_EQ(shown(actual.bLess), meaning.less) << unit;
            EXPECT_EQ(shown(actual.NoData), meaning.noData) << unit;
        }
        const unsigned unit = rcdMain ? 0x20 : 0x10;  // code 1: neither a limit nor without data anywhere
        const ValData clear = reading(unit);
        const ValData set = reading(unit | 0x80U);
        EXPECT_EQ(clear.strValD1, row[2] == "positive" ? "-123" : "123");
        EXPECT_EQ(set.strValD1, row[2] == "negative" ? "-123" : "123");
        EXPECT_EQ(shown(set.bLess), row[2] == "limit" ? "1" : "");
        for (unsigned low = 0; low < 16; ++low)
            EXPECT_EQ(reading(unit | low).pointPosD1, rcdMain ? 0 : low) << low;
        if (rcdMain) {
            EXPECT_EQ(reading(unit | 0x10U).pointPosD1, 1);
        }
    }
}

TEST(FrameFormatDocument, NoDataAndOverloadHaveTheirBits) {
    for (const Row& row : table("| Bit of byte 25 | Sets |")) {
        const std::string field = row[1].substr(1, row[1].find('`', 1) - 1);
        const std::vector<std::size_t> bits = numbers(row[0]);
        ASSERT_EQ(bits.size(), 4U);
        for (std::size_t set = 1; set <= 4; ++set) {
            const auto byte = static_cast<std::uint8_t>(1U << bits[set - 1]);
            const MeterReading record = decoded(frameOf('4').noDataOverload(byte));
            for (std::size_t n = 1; n <= 4; ++n)
                EXPECT_EQ(fieldOf(record, "ValData" + std::to_string(n) + "." + field), n == set ? "1" : "")
                    << field << " " << n;
        }
    }
}

const std::map<std::string, std::uint8_t MeterReading::*> kIndexes{
    {"iSubFunc", &MeterReading::iSubFunc},     {"iSubFuncF2", &MeterReading::iSubFuncF2},
    {"iSubFuncF3", &MeterReading::iSubFuncF3}, {"iSubFuncF4", &MeterReading::iSubFuncF4},
    {"bBeepFlag", &MeterReading::bBeepFlag},   {"bLockFlag", &MeterReading::bLockFlag},
    {"bCalFlag", &MeterReading::bCalFlag}};

void expectTexts(MeterReading record, const std::string& index, const std::string& valueField,
                 const std::vector<std::string>& wanted) {
    for (unsigned i = 0; i < 256; ++i) {
        record.*kIndexes.at(index) = static_cast<std::uint8_t>(i);
        deriveTexts(0, record);
        ASSERT_EQ(fieldOf(record, valueField), i < wanted.size() ? wanted[i] : "") << index << " = " << i;
    }
}

TEST(FrameFormatDocument, SettingsHaveTheirTexts) {
    std::map<std::string, Row> byPlace;
    for (const Row& row : table("| Function | Pair | Name | Index | Texts |"))
        EXPECT_TRUE(byPlace.emplace(plain(row[0]) + row[1], row).second) << row[0] << row[1];
    for (char code = '1'; code <= '7'; ++code) {
        for (const std::string pair : {"1", "2", "3", "4"}) {
            SCOPED_TRACE(std::string(1, code) + " pair " + pair);
            MeterReading record;
            record.iFunction = static_cast<std::uint8_t>(code);
            deriveTexts(0, record);
            const auto row = byPlace.find(code + pair);
            const bool named = row != byPlace.end();
            EXPECT_EQ(fieldOf(record, "strF" + pair + "Name"), named ? plain(row->second[2]) : "");
            if (!named || row->second[3] == "none") {
                EXPECT_EQ(fieldOf(record, "strF" + pair + "Value"), "");
            } else if (row->second[4] != "by mode") {
                expectTexts(record, plain(row->second[3]), "strF" + pair + "Value", texts(row->second[4]));
            }
            if (named) byPlace.erase(row);
        }
    }
    EXPECT_TRUE(byPlace.empty());
}

TEST(FrameFormatDocument, TripCurrentsFollowTheRcdMode) {
    std::map<std::string, std::vector<std::string>> currents;
    for (const Row& row : table("| Modes | Trip currents |")) {
        for (const std::string& mode : texts(row[0])) currents[mode] = texts(row[1]);
    }
    EXPECT_EQ(currents.size(), 6U);
    for (std::uint8_t mode = 0; mode < 6; ++mode) {
        MeterReading record;
        record.iFunction = mode == 0 ? '7' : '6';
        record.iSubFunc = mode;
        deriveTexts(0, record);
        expectTexts(record, "iSubFuncF2", "strF2Value", currents.at(record.strF1Value));
    }
}

TEST(FrameFormatDocument, WireVoltagesStandWhereTheStatusSays) {
    const std::map<std::string, double> volts{
        {"reading 3", 230}, {"wire A", 7}, {"wire B", 229}, {"no data", kNoDataValue}};
    for (const Row& row : table("| Bit 3 | Bit 0 | `dLpe` | `dNpe` | `dLn` |")) {
        for (const char code : {'4', '5', '6'}) {
            for (unsigned bit0 = 0; bit0 < 2; ++bit0) {
                if (row[1] != "any" && row[1] != std::to_string(bit0)) continue;
                const auto status = static_cast<std::uint8_t>((row[0] == "1" ? 8U : 0U) | bit0);
                const std::uint8_t positive = code == '5' ? 0x80 : 0;
                const MeterReading record =
                    decoded(frameOf(code).reading(3, 230, positive).wires(7, 229).status(status));
                EXPECT_EQ(record.dLpe, volts.at(row[2])) << row[0] << row[1];
                EXPECT_EQ(record.dNpe, volts.at(row[3])) << row[0] << row[1];
                EXPECT_EQ(record.dLn, volts.at(row[4])) << row[0] << row[1];
            }
        }
    }
}

TEST(FrameFormatDocument, LimitsHaveTheirTexts) {
    const std::vector<Row> rows = table("| Function | `strUL` | without data | `strUF` | without data |");
    ASSERT_EQ(rows.size(), 2U);
    // `text`, and behind it the reading that has no data
    static const std::regex withoutData("`([^`]*)`.*, when reading (\\d) has no data");
    for (const Row& row : rows) {
        for (const std::size_t column : {1U, 3U}) {
            if (row[column].empty()) continue;
            MeterReading record;
            record.iFunction = row[0] == "RCD" ? '6' : '5';
            record.dUl = 50;
            record.dUf = 0.4;
            deriveTexts(0, record);
            const std::string field = column == 1 ? "strUL" : "strUF";
            EXPECT_EQ(fieldOf(record, field), plain(row[column])) << row[0];
            std::smatch match;
            ASSERT_TRUE(std::regex_search(row[column + 1], match, withoutData)) << row[column + 1];
            (record.*kSlots.at("ValData" + match[2].str())).NoData = 1;
            deriveTexts(0, record);
            EXPECT_EQ(fieldOf(record, field), match[1].str()) << row[0];
        }
    }
}

TEST(FrameFormatDocument, TheStatusSelectsThePicture) {
    std::size_t values = 0;
    for (const Row& row : table("| Low four status bits | `bottompicIndex` |")) {
        for (const std::size_t low : numbers(row[0])) {
            ++values;
            const auto status = static_cast<std::uint8_t>(low);
            for (const char code : {'4', '5', '6'})
                EXPECT_EQ(decoded(frameOf(code).status(status)).bottompicIndex, std::stoi(row[1])) << low;
            EXPECT_EQ(decoded(frameOf('1').status(status)).bottompicIndex, 1);
            for (const auto& frame : {frameOf('2'), frameOf('3'), FrameBuilder('6')})
                EXPECT_EQ(decoded(FrameBuilder(frame).status(status)).bottompicIndex, 0);
        }
    }
    EXPECT_EQ(values, 16U);
}

TEST(FrameFormatDocument, EachStepFillsItsSlot) {
    std::size_t steps = 0;
    for (const Row& row : table("| Step | Slot | Result at |")) {
        for (const std::size_t step : numbers(row[0])) {
            ++steps;
            const MeterReading record =
                decoded(FrameBuilder('6').reading(1, 123, static_cast<std::uint8_t>(step)));
            EXPECT_EQ(record.iFunction, '7');
            for (const auto& [name, slot] : kSlots) {
                if (name.starts_with("x")) {
                    EXPECT_EQ((record.*slot).strValD1, name == plain(row[1]) ? "123" : "") << step << name;
                }
            }
        }
    }
    EXPECT_EQ(steps, 16U);
}

TEST(FrameFormatDocument, EveryExampleDecodesToWhatItSays) {
    const auto& lines = document();
    std::set<std::string> functions;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i] != "```frame") continue;
        const std::string& text = lines.at(i + 1);
        SCOPED_TRACE(text);
        EXPECT_EQ(text.size(), 2 * frame::kLength);
        const MeterReading record = KV3820protocal{}.initFromString(text).getAllDataStructValue();
        functions.insert(fieldOf(record, "iFunction"));

        std::map<std::string, std::string> stated;
        for (std::size_t j = i + 3; j < lines.size() && !lines[j].starts_with("#"); ++j) {
            static const std::regex statement("`([A-Za-z0-9.]+)` = `([^`]*)`");
            for (std::sregex_iterator at(lines[j].begin(), lines[j].end(), statement), end; at != end; ++at)
                EXPECT_TRUE(stated.emplace((*at)[1], (*at)[2]).second) << "twice: " << (*at)[1];
        }
        for (const auto& [name, value] : stated) EXPECT_EQ(fieldOf(record, name), value) << name;
        for (const auto& [name, get] : fields()) {
            if (!get(record).empty()) {
                EXPECT_EQ(stated.count(name), 1U) << "not stated: " << name;
            }
        }
    }
    EXPECT_EQ(functions, (std::set<std::string>{"", "1", "2", "3", "4", "5", "6", "7"}));
}

}  // namespace
}  // namespace kestrix::protocol
