#include "apps/kestrix-cli/TerminalText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace kestrix::cli {
namespace {

using app::firstCharacterOf;

struct Range {
    char32_t first;
    char32_t last;
};

constexpr std::array kNoColumn = std::to_array<Range>({{0x0300, 0x036F},
                                                       {0x0483, 0x0489},
                                                       {0x0591, 0x05BD},
                                                       {0x0610, 0x061A},
                                                       {0x064B, 0x065F},
                                                       {0x1AB0, 0x1AFF},
                                                       {0x1DC0, 0x1DFF},
                                                       {0x200B, 0x200D},
                                                       {0x20D0, 0x20FF},
                                                       {0xFE00, 0xFE0F},
                                                       {0xFE20, 0xFE2F}});
constexpr std::array kTwoColumns = std::to_array<Range>({{0x1100, 0x115F},
                                                         {0x2E80, 0x303E},
                                                         {0x3041, 0x4DBF},
                                                         {0x4E00, 0xA4CF},
                                                         {0xAC00, 0xD7A3},
                                                         {0xF900, 0xFAFF},
                                                         {0xFE30, 0xFE6F},
                                                         {0xFF00, 0xFF60},
                                                         {0xFFE0, 0xFFE6},
                                                         {0x1F300, 0x1F64F},
                                                         {0x1F680, 0x1F6FF},
                                                         {0x1F900, 0x1F9FF},
                                                         {0x1FA70, 0x1FAFF},
                                                         {0x20000, 0x3FFFD}});

constexpr std::string_view kEllipsis = "…";

bool isIn(std::span<const Range> ranges, char32_t c) {
    return std::any_of(ranges.begin(), ranges.end(),
                       [c](Range range) { return c >= range.first && c <= range.last; });
}

int columnsOf(char32_t c) {
    return isIn(kNoColumn, c) ? 0 : isIn(kTwoColumns, c) ? 2 : 1;
}

// The beginning of a text, by whole characters, that fits into `columns`.
std::string_view beginning(std::string_view text, int columns) {
    std::size_t size = 0;
    while (size < text.size()) {
        const auto character = firstCharacterOf(text.substr(size));
        columns -= columnsOf(character.code);
        if (columns < 0) break;
        size += character.bytes;
    }
    return text.substr(0, size);
}

constexpr std::string_view codesOf(Ink ink) {
    constexpr std::array<std::string_view, 7> codes{"", "2", "1", "1;97;44", "1;32", "1;31", "1;33"};
    return codes[static_cast<std::size_t>(ink)];
}

}  // namespace

int columnsOf(std::string_view text) {
    int columns = 0;
    while (!text.empty()) {
        const auto character = firstCharacterOf(text);
        columns += columnsOf(character.code);
        text.remove_prefix(character.bytes);
    }
    return columns;
}

std::string clipped(std::string_view text, int columns) {
    if (columns <= 0) return {};
    if (columnsOf(text) <= columns) return std::string(text);
    return std::string(beginning(text, columns - 1)).append(kEllipsis);
}

int columnsOf(const Row& row) {
    int columns = 0;
    for (const auto& span : row) columns += columnsOf(span.text);
    return columns;
}

Row clipped(const Row& row, int columns) {
    if (columnsOf(row) <= columns) return row;
    Row out;
    for (const auto& span : row) {
        const int width = columnsOf(span.text);
        if (width >= columns) {  // something follows, or this is too long already: this span holds the end
            out.push_back({clipped(span.text + "  ", columns), span.ink});
            break;
        }
        out.push_back(span);
        columns -= width;
    }
    return out;
}

std::string rendered(const Row& row, bool colour) {
    std::string out;
    for (const auto& span : row) {
        const auto codes = colour ? codesOf(span.ink) : std::string_view();
        if (codes.empty()) {
            out += span.text;
        } else {
            out.append("\x1b[").append(codes).append("m").append(span.text).append("\x1b[0m");
        }
    }
    return out;
}

}  // namespace kestrix::cli
