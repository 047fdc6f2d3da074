#include "simulator/BuiltinScenarios.h"

#include "simulator/BuiltinScenarioTable.h"

namespace kestrix::simulator {

std::optional<std::string_view> builtinScenario(std::string_view name) {
    for (const NamedScenario& scenario : builtinScenarioTable()) {
        if (scenario.name == name) return scenario.text;
    }
    return std::nullopt;
}

std::vector<std::string_view> builtinScenarioNames() {
    std::vector<std::string_view> names;
    for (const NamedScenario& scenario : builtinScenarioTable()) names.push_back(scenario.name);
    return names;
}

}  // namespace kestrix::simulator
