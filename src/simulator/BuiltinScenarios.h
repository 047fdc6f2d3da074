#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace kestrix::simulator {

// The scenario that is played when none is named.
inline constexpr std::string_view kDefaultScenario = "house";

// The text of a scenario that is built in; nothing for an unknown name. The text lives as long as the
// program.
std::optional<std::string_view> builtinScenario(std::string_view name);

// Every built-in name, in alphabetical order.
std::vector<std::string_view> builtinScenarioNames();

}  // namespace kestrix::simulator
