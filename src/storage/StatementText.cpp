#include "storage/StatementText.h"

#include <sqlite3.h>

#include <algorithm>
#include <climits>

namespace kestrix::storage {
namespace {

int lengthOf(std::string_view text) {
    return static_cast<int>(std::min<std::size_t>(text.size(), INT_MAX));
}

void append(sqlite3_str* out, std::string_view value) {
    for (std::size_t nul = value.find('\0'); nul != std::string_view::npos; nul = value.find('\0')) {
        sqlite3_str_appendf(out, "%.*q'||char(0)||'", lengthOf(value.substr(0, nul)), value.data());
        value.remove_prefix(nul + 1);
    }
    sqlite3_str_appendf(out, "%.*q", lengthOf(value), value.data());
}

void append(sqlite3_str* out, std::int64_t value) {
    sqlite3_str_appendf(out, "%d", static_cast<std::int32_t>(value));
}

}  // namespace

void FreeText::operator()(char* text) const {
    sqlite3_free(text);
}

StatementText statementText(std::string_view text, std::initializer_list<StatementValue> values) {
    sqlite3_str* out = sqlite3_str_new(nullptr);
    for (const StatementValue& value : values) {
        const std::size_t placeholder = text.find('%');
        sqlite3_str_append(out, text.data(), lengthOf(text.substr(0, placeholder)));
        std::visit([out](auto content) { append(out, content); }, value);
        text.remove_prefix(placeholder + 2);
    }
    sqlite3_str_append(out, text.data(), lengthOf(text));
    return StatementText(sqlite3_str_finish(out));
}

}  // namespace kestrix::storage
