#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestrix::display {

// The titles of the tester's functions, in the order of its dial.
enum class Title : std::uint8_t { None, Insulation, Earth, LowOhm, Voltage, Loop, Rcd };

struct TitleTexts {
    Title title;
    std::string_view name;  // of its label
    std::string_view text;
};

inline constexpr std::array<TitleTexts, 6> kTitles{{
    {Title::Insulation, "fun1", "INSULATION"},
    {Title::Earth, "fun2", "RE"},
    {Title::LowOhm, "fun3", "LOW OHM"},
    {Title::Voltage, "fun4", "V"},
    {Title::Loop, "fun5", "LOOP/PFC"},
    {Title::Rcd, "fun6", "RCD"},
}};

constexpr bool titlesStandInDialOrder() {
    for (std::size_t i = 0; i < kTitles.size(); ++i) {
        if (static_cast<std::size_t>(kTitles[i].title) != i + 1) return false;
    }
    return true;
}
static_assert(titlesStandInDialOrder());

// The texts of a title; none for Title::None.
constexpr const TitleTexts* textsOf(Title title) {
    return title == Title::None ? nullptr : &kTitles[static_cast<std::size_t>(title) - 1];
}

// The title of a function code, '1' to '7'; Title::None for any other. The codes do not stand in dial order.
constexpr Title titleOf(std::int32_t function) {
    constexpr std::array<Title, 7> titles{Title::Earth, Title::Insulation, Title::LowOhm, Title::Voltage,
                                          Title::Loop,  Title::Rcd,        Title::Rcd};
    return function >= '1' && function <= '7' ? titles[static_cast<std::size_t>(function - '1')]
                                              : Title::None;
}

}  // namespace kestrix::display
