#include "apps/kestrix-cli/ReadingJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>
#include <string>
#include <type_traits>
#include <vector>

#include "apps/kestrix-cli/ReadingFields.h"

namespace kestrix::cli {
namespace {

using nlohmann::ordered_json;
using protocol::MeterReading;
using protocol::ValData;

std::string textOf(const MeterReading& reading) {
    std::string out;
    appendReadingJson(out, reading);
    return out;
}

ordered_json parsed(const MeterReading& reading) {
    return ordered_json::parse(textOf(reading));
}

// The members of a struct, as its header declares them.
std::vector<std::string> declaredFields(const std::string& header) {
    std::ifstream file(std::string(KESTRIX_SOURCE_DIR "/src/protocol/") + header);
    const std::regex member(R"(^    (?:bool|double|std::uint8_t|std::string|ValData) (\w+)(?: = \w+)?;.*)");
    std::vector<std::string> names;
    std::smatch match;
    for (std::string line; std::getline(file, line);) {
        if (std::regex_match(line, match, member)) names.push_back(match[1]);
    }
    return names;
}

std::vector<std::string> keysOf(const ordered_json& object) {
    std::vector<std::string> keys;
    for (const auto& item : object.items()) keys.push_back(item.key());
    return keys;
}

// Fills every field, the nested ones included, with what make(field) gives.
template <class Fields, class Struct, class Make>
void fill(Struct& value, Make& make) {
    Fields::forEach([&]<class F>(F) {
        auto& member = value.*F::member;
        if constexpr (std::is_same_v<decltype(member), ValData&>) {
            fill<ValDataFields>(member, make);
        } else {
            make(member);
        }
    });
}

template <class Fields, class Struct>
void expectSame(const ordered_json& json, const Struct& value) {
    Fields::forEach([&]<class F>(F) {
        const auto& member = value.*F::member;
        using Type = std::remove_cvref_t<decltype(member)>;
        SCOPED_TRACE(F::name.text);
        const auto& found = json.at(F::name.text);
        if constexpr (std::is_same_v<Type, ValData>) {
            expectSame<ValDataFields>(found, member);
        } else {
            EXPECT_EQ(found.is_boolean(), (std::is_same_v<Type, bool>));
            EXPECT_EQ(found.is_string(), (std::is_same_v<Type, std::string>));
            EXPECT_EQ(found.template get<Type>(), member);
        }
    });
}

struct Distinct {
    int next = 1;
    void operator()(bool& field) const { field = true; }
    void operator()(std::uint8_t& field) { field = static_cast<std::uint8_t>(next++); }
    void operator()(double& field) { field = next++ + 0.25; }
    void operator()(std::string& field) { field = "text " + std::to_string(next++); }
};

struct Random {
    std::mt19937_64 engine;
    std::uint64_t below(std::uint64_t limit) { return engine() % limit; }
    void operator()(bool& field) { field = below(2) == 1; }
    void operator()(std::uint8_t& field) { field = static_cast<std::uint8_t>(below(256) >> below(9)); }
    void operator()(double& field) {
        const auto number = static_cast<double>(engine());
        const double digits = static_cast<double>(below(70000)) / std::pow(10, below(6));
        field = below(4) == 0 ? -number * 1e-30 : below(3) == 0 ? number : digits;
    }
    void operator()(std::string& field) {
        static const std::vector<std::string> pieces{"Ω",    "°",    "a", "\"", "\\", "\n",
                                                     "12.5", "\x01", "😀", " ",  "/"};
        field.clear();
        for (auto count = below(20); count > 0; --count) field += pieces[below(pieces.size())];
        if (below(2) == 0) field.clear();
    }
};

std::string numberText(double value) {
    MeterReading reading;
    reading.dUl = value;
    const std::string text = textOf(reading);
    const auto begin = text.find("\"dUl\":") + 6;
    return text.substr(begin, text.find(',', begin) - begin);
}

std::string stringText(const std::string& value) {
    MeterReading reading;
    reading.strUF = value;
    const std::string text = textOf(reading);
    const auto begin = text.find("\"strUF\":") + 8;
    return text.substr(begin, text.rfind(",\"bottompicIndex") - begin);
}

TEST(ReadingJson, NamesAreTheDeclaredOnesInOrder) {
    const auto declared = declaredFields("MeterReading.h");
    ASSERT_EQ(declared.size(), 56U);
    const auto json = parsed({});
    EXPECT_EQ(keysOf(json), declared);
    const auto nested = declaredFields("ValData.h");
    ASSERT_EQ(nested.size(), 7U);
    for (const auto& name : {"ValData1", "ValData4", "x120", "x5180"})
        EXPECT_EQ(keysOf(json.at(name)), nested);
}

TEST(ReadingJson, NestedNamesStayInOrderWhenValuesAreSet) {
    MeterReading reading;
    Distinct distinct;
    fill<ReadingFields>(reading, distinct);
    EXPECT_EQ(keysOf(parsed(reading).at("x120")), declaredFields("ValData.h"));
    EXPECT_EQ(keysOf(parsed(reading)), declaredFields("MeterReading.h"));
}

TEST(ReadingJson, EveryFieldCarriesItsOwnValue) {
    MeterReading reading;
    Distinct distinct;
    fill<ReadingFields>(reading, distinct);
    ASSERT_EQ(distinct.next, 1 + 55 - 10 + 70) << "every number and text has a value of its own";
    expectSame<ReadingFields>(parsed(reading), reading);
}

TEST(ReadingJson, AllZeroReading) {
    expectSame<ReadingFields>(parsed({}), MeterReading{});
}

// A ValData with one field set is not taken for an empty one.
TEST(ReadingJson, OneFieldOfAValueIsEnough) {
    ValDataFields::forEach([]<class F>(F) {
        MeterReading reading;
        auto& member = reading.x10.*F::member;
        Distinct{}(member);
        SCOPED_TRACE(F::name.text);
        expectSame<ReadingFields>(parsed(reading), reading);
        EXPECT_NE(textOf(reading), textOf({}));
    });
}

TEST(ReadingJson, IsCompactAndOneLine) {
    MeterReading reading;
    reading.strfunction = "EARTH";
    const auto text = textOf(reading);
    EXPECT_EQ(text.find_first_of(" \n\t"), std::string::npos);
    EXPECT_EQ(ordered_json::parse(text).at("strfunction"), "EARTH");
}

TEST(ReadingJson, NumbersAreTheShortestThatReadBack) {
    EXPECT_EQ(numberText(0), "0");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(5000001.0), "5000001");
    EXPECT_EQ(numberText(100000), "100000");
    EXPECT_EQ(numberText(-230.0), "-230");
    EXPECT_EQ(numberText(-123.45), "-123.45");
    EXPECT_EQ(numberText(1e-11), "1e-11");
    EXPECT_EQ(numberText(123456.789), "123456.789");
    EXPECT_EQ(numberText(9007199254740991.0), "9007199254740991");
    EXPECT_EQ(numberText(-9007199254740991.0), "-9007199254740991");
}

TEST(ReadingJson, ExtremeNumbersReadBackEqual) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(), 1e22,
                               1e300, 9007199254740992.0, -9007199254740994.0, 1.0 / 3, -1e-308}) {
        EXPECT_EQ(ordered_json::parse(numberText(value)).get<double>(), value);
    }
}

TEST(ReadingJson, MinusZeroKeepsItsSign) {
    EXPECT_EQ(numberText(-0.0), "-0.0");
    EXPECT_TRUE(std::signbit(ordered_json::parse(numberText(-0.0)).get<double>()));
    MeterReading reading;
    reading.x50.ValD1 = -0.0;
    EXPECT_TRUE(std::signbit(parsed(reading)["x50"]["ValD1"].get<double>()));
}

TEST(ReadingJson, WhatIsNotFiniteIsNull) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
        EXPECT_EQ(numberText(value), "null");
    }
}

TEST(ReadingJson, OnlyMandatoryCharactersAreEscaped) {
    EXPECT_EQ(stringText("MΩ 0° 😀 / \x7f é"), "\"MΩ 0° 😀 / \x7f é\"");
    EXPECT_EQ(stringText("a\"b\\c"), R"("a\"b\\c")");
    EXPECT_EQ(stringText("\b\f\n\r\t"), R"("\b\f\n\r\t")");
    EXPECT_EQ(stringText("\x01\x1f"), R"("\u0001\u001f")");
    EXPECT_EQ(stringText(std::string(1, '\0')), R"("\u0000")");
}

// Long enough to meet every way of scanning, at every place of the character.
TEST(ReadingJson, EscapesAtEveryPlace) {
    for (int code = 0; code < 0x80; ++code) {
        for (std::size_t size = 1; size <= 20; ++size) {
            for (std::size_t place = 0; place < size; ++place) {
                std::string text(size, 'x');
                text[place] = static_cast<char>(code);
                const auto json = stringText(text);
                ASSERT_EQ(ordered_json::parse(json).get<std::string>(), text) << json;
                ASSERT_EQ(json, ordered_json(text).dump());
            }
        }
    }
}

TEST(ReadingJson, LongTextsFit) {
    MeterReading reading;
    reading.strF3Value = std::string(100'000, '\x02') + "Ω";
    reading.x12180.strValD1 = std::string(100'000, '"');
    expectSame<ReadingFields>(parsed(reading), reading);
}

TEST(ReadingJson, AppendsBehindWhatIsThere) {
    std::string out = "before\n";
    appendReadingJson(out, {});
    out += '\n';
    appendReadingJson(out, {});
    EXPECT_EQ(out, "before\n" + textOf({}) + "\n" + textOf({}));
}

TEST(ReadingJson, RandomReadingsComeBack) {
    Random random{std::mt19937_64(20240611)};
    for (int n = 0; n < 500; ++n) {
        MeterReading reading;
        fill<ReadingFields>(reading, random);
        const auto text = textOf(reading);
        expectSame<ReadingFields>(ordered_json::parse(text), reading);
        ASSERT_FALSE(::testing::Test::HasFailure()) << text;
    }
}

}  // namespace
}  // namespace kestrix::cli
