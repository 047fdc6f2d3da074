// Any text as a formatting pattern: what comes out keeps the pass's promises, and is what a second reading of
// its rules, written with regular expressions, gives.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <string_view>

#include "history/PatternPass.h"

namespace {

constexpr std::string_view kStamp = "20260304050607";
// The regular expression's own way is recursive.
constexpr std::size_t kReadAgainUpTo = 2000;

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

std::string passed(std::string_view pattern) {
    // On the heap and of exactly this size: a read beyond it is a finding of the sanitizer.
    const std::unique_ptr<char[]> bytes(new char[pattern.size()]);
    pattern.copy(bytes.get(), pattern.size());
    std::string text;
    kestrix::history::appendPatternPass(text, {bytes.get(), pattern.size()}, kStamp);
    return text;
}

std::size_t count(std::string_view text, std::string_view wanted) {
    std::size_t found = 0;
    for (std::size_t at = 0; (at = text.find(wanted, at)) != std::string_view::npos; at += wanted.size())
        ++found;
    return found;
}

constexpr std::string_view kFlags = "-+#0' ";

// In bytes, of the directive that begins there; 0: there is none. Tries every number of flags; where one of
// them comes to a conversion, any other one comes to the same.
std::size_t directiveLength(const std::string& text) {
    static const std::regex position("^%\\d+\\$");
    static const std::regex behindFlags(
        "^(?:\\*(?:\\d+\\$)?|\\d+)?(?:\\.(?:\\*(?:\\d+\\$)?|\\d+)?)?(?:hh?|ll?|q|L|z|t|j)?"
        "[@dDiuUxXoOfFeEgGaAcCsSpn]");
    std::smatch match;
    const std::size_t begin =
        std::regex_search(text, match, position) ? static_cast<std::size_t>(match.length()) : 1;
    std::set<char> flags;
    for (std::size_t at = begin;; ++at) {
        const std::string rest = text.substr(at);
        if (std::regex_search(rest, match, behindFlags)) return at + static_cast<std::size_t>(match.length());
        const bool flag = !rest.empty() && kFlags.find(rest[0]) != std::string_view::npos;
        if (!flag || !flags.insert(rest[0]).second) return 0;
    }
}

std::string expected(const std::string& pattern) {
    std::string text;
    for (std::string rest = pattern; !rest.empty();) {
        std::size_t taken = 1;
        if (rest.starts_with("%@")) {
            text += kStamp;
            taken = 2;
        } else if (rest.starts_with("%%")) {
            text += '%';
            taken = 2;
        } else if (rest[0] != '%' || (taken = directiveLength(rest)) == 0) {
            text += rest[0];
            taken = 1;
        }
        rest.erase(0, taken);
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string pattern(data, data + size);
    const std::string text = passed(pattern);

    const std::size_t places = count(pattern, "%@");
    require(text.size() <= pattern.size() + places * (kStamp.size() - 2), "only time stamps make it longer");
    require(places > 0 || text.size() <= pattern.size(), "without a place for the stamp it never grows");
    if (pattern.find('%') == std::string::npos) require(text == pattern, "a text without % is unchanged");
    require(count(text, "%") <= count(pattern, "%"), "no percent sign is made up");

    // Line by line is the same as all at once.
    std::string lines;
    for (std::string_view rest = pattern; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
        lines += passed(rest.substr(0, end));
        rest.remove_prefix(end);
    }
    require(lines == text, "a line feed is no part of a directive");

    std::string escaped;
    for (const char c : pattern) escaped += c == '%' ? std::string("%%") : std::string(1, c);
    require(passed(escaped) == pattern, "two percent signs are one");

    if (size <= kReadAgainUpTo) require(text == expected(pattern), "the second reading gives the same");
    return 0;
}
