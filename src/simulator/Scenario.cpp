#include "simulator/Scenario.h"

#include <algorithm>
#include <array>
#include <utility>

#include "simulator/Statements.h"

namespace kestrix::simulator {

namespace {

constexpr std::size_t kMaxLineBytes = 1000;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Statement {
    std::string_view name;
    void (*apply)(Words&, ScenarioBuilder&);
};

constexpr std::array<Statement, 20> kStatements = {{{"auto-sequence", statement::autoSequence},
                                                    {"burst", statement::burst},
                                                    {"bytewise", statement::bytewise},
                                                    {"cut", statement::cut},
                                                    {"damage", statement::damage},
                                                    {"function", statement::function},
                                                    {"garbage", statement::garbage},
                                                    {"line", statement::line},
                                                    {"off", statement::off},
                                                    {"on", statement::on},
                                                    {"rate", statement::rate},
                                                    {"reading", statement::reading},
                                                    {"repeat", statement::repeat},
                                                    {"set", statement::set},
                                                    {"show", statement::show},
                                                    {"silence", statement::silence},
                                                    {"step", statement::step},
                                                    {"switch-off", statement::switchOff},
                                                    {"touch-limit", statement::touchLimit},
                                                    {"wires", statement::wires}}};

void applyLine(std::string_view line, ScenarioBuilder& tester) {
    if (line.size() > kMaxLineBytes) {
        throw StatementError{"the line is longer than " + std::to_string(kMaxLineBytes) + " bytes"};
    }
    Words words{line};
    if (words.atEnd()) return;
    const std::string_view name = words.take("a statement");
    const auto* found = std::find_if(kStatements.begin(), kStatements.end(),
                                     [name](const Statement& s) { return s.name == name; });
    if (found == kStatements.end()) throw StatementError{"unknown statement " + inQuotes(name)};
    found->apply(words, tester);
}

}  // namespace

std::string ScenarioError::text() const {
    return "line " + std::to_string(line) + ": " + message;
}

std::variant<Scenario, ScenarioError> parseScenario(std::string_view text) {
    std::size_t number = 1;
    try {
        if (text.size() > kMaxScenarioBytes) {
            throw StatementError{"the text is longer than " + std::to_string(kMaxScenarioBytes) + " bytes"};
        }
        if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark)
            text.remove_prefix(kByteOrderMark.size());
        ScenarioBuilder tester;
        for (;; ++number) {
            const std::size_t end = text.find('\n');
            applyLine(text.substr(0, end), tester);
            if (end == std::string_view::npos || end + 1 == text.size()) break;
            text.remove_prefix(end + 1);
        }
        return tester.finish();
    } catch (StatementError& error) {
        return ScenarioError{number, std::move(error.message)};
    }
}

}  // namespace kestrix::simulator
