#pragma once

#include <span>
#include <string_view>

namespace kestrix::simulator {

struct NamedScenario {
    std::string_view name;
    std::string_view text;
};

// Made at build time from the files in scenarios/, in alphabetical order.
std::span<const NamedScenario> builtinScenarioTable();

}  // namespace kestrix::simulator
