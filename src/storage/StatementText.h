#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <variant>

namespace kestrix::storage {

struct FreeText {
    void operator()(char* text) const;
};
using StatementText = std::unique_ptr<char, FreeText>;

using StatementValue = std::variant<std::string_view, std::int64_t>;

// The statement with its placeholders filled, in order: %@ (inside single quotes) by a text, whose quotes
// are doubled; %d by the low 32 bits of a number, signed. values: as many and of such kinds as there are
// placeholders. A NUL inside a text becomes '||char(0)||', so that nothing behind it is lost.
// Null when the result passes SQLite's limit of 1,000,000,000 bytes.
StatementText statementText(std::string_view text, std::initializer_list<StatementValue> values);

}  // namespace kestrix::storage
