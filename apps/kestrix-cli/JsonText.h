#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace kestrix::cli {

// A text as JSON writes it: between quotes, with quotes, backslashes and control characters escaped and all
// others as they are. The text must be valid UTF-8: its bytes are not checked.
void appendJsonText(std::string& out, std::string_view text);

// What one byte of a text takes at most: \u001f.
inline constexpr std::size_t kEscapedCharacter = 6;

// The same for those who have made room: 2 + kEscapedCharacter * text.size() bytes. Answers the place behind.
char* putJsonText(char* at, std::string_view text);

// Inline because a reading has dozens of texts, nearly all of them short or empty.
namespace json_text {

// Writes the text with its escapes, without quotes.
char* putEscaped(char* at, std::string_view text);

inline bool mustEscape(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '"' || c == '\\';
}

// True when one of the eight characters must be escaped: below a blank, a quote or a backslash.
// A borrow may mark a character above a marked one, never the word of a clean eight.
inline bool anyToEscape(std::uint64_t eight) {
    constexpr std::uint64_t ones = 0x0101010101010101U;
    const std::uint64_t quote = eight ^ (ones * '"');
    const std::uint64_t backslash = eight ^ (ones * '\\');
    const std::uint64_t marks =
        ((eight - ones * ' ') & ~eight) | ((quote - ones) & ~quote) | ((backslash - ones) & ~backslash);
    return (marks & (ones * 0x80U)) != 0;
}

// Copies a text that has nothing to escape; null when it has.
inline char* putClean(char* at, std::string_view text) {
    const char* from = text.data();
    const char* const end = from + text.size();
    for (; end - from >= 8; from += 8, at += 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, from, 8);
        if (anyToEscape(eight)) return nullptr;
        std::memcpy(at, &eight, 8);
    }
    for (; from != end; ++from, ++at) {
        if (mustEscape(*from)) return nullptr;
        *at = *from;
    }
    return at;
}

}  // namespace json_text

inline char* putJsonText(char* at, std::string_view text) {
    *at++ = '"';
    char* const behind = json_text::putClean(at, text);
    at = behind != nullptr ? behind : json_text::putEscaped(at, text);
    *at++ = '"';
    return at;
}

}  // namespace kestrix::cli
