#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestrix::app {

// `text` with everything that a terminal would obey or could not show replaced by U+FFFD: control characters,
// line and direction marks, bytes that are not UTF-8. The result is valid UTF-8.
std::string printable(std::string_view text);

// One character of a UTF-8 text.
struct Character {
    char32_t code = 0;
    std::size_t bytes = 1;
    bool valid = false;
};

// The first character of a text that is not empty; one byte, not valid, where there is none.
Character firstCharacterOf(std::string_view text);

}  // namespace kestrix::app
