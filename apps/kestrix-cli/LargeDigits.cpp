#include "apps/kestrix-cli/LargeDigits.h"

#include <algorithm>
#include <cstddef>

#include "apps/kestrix-cli/TerminalText.h"

namespace kestrix::cli {
namespace {

struct Shape {
    char character;
    std::array<std::string_view, 3> rows;
};

constexpr std::array kShapes = std::to_array<Shape>({
    {'0', {"┏━┓", "┃ ┃", "┗━┛"}},
    {'1', {" ╺┓", "  ┃", "  ╹"}},
    {'2', {"╺━┓", "┏━┛", "┗━╸"}},
    {'3', {"╺━┓", "╺━┫", "╺━┛"}},
    {'4', {"╻ ╻", "┗━┫", "  ╹"}},
    {'5', {"┏━╸", "┗━┓", "╺━┛"}},
    {'6', {"┏━╸", "┣━┓", "┗━┛"}},
    {'7', {"╺━┓", "  ┃", "  ╹"}},
    {'8', {"┏━┓", "┣━┫", "┗━┛"}},
    {'9', {"┏━┓", "┗━┫", "╺━┛"}},
    {'O', {"┏━┓", "┃ ┃", "┗━┛"}},
    {'L', {"╻  ", "┃  ", "┗━╸"}},
    {'-', {"   ", "╺━╸", "   "}},
    {'.', {" ", " ", "."}},
    {' ', {" ", " ", " "}},
});

}  // namespace

std::array<std::string, 3> largeDigits(std::string_view printableText) {
    std::array<std::string, 3> rows;
    const auto space = [&rows] {
        for (auto& row : rows) row += ' ';
    };
    while (!printableText.empty()) {
        if (!rows[1].empty()) space();
        const char first = printableText.front();
        const auto shape = std::find_if(kShapes.begin(), kShapes.end(),
                                        [first](const Shape& s) { return s.character == first; });
        if (shape != kShapes.end()) {
            for (std::size_t i = 0; i < rows.size(); ++i) rows[i] += shape->rows[i];
            printableText.remove_prefix(1);
            continue;
        }
        std::size_t bytes = 1;
        while (bytes < printableText.size() && (printableText[bytes] & '\xC0') == '\x80') ++bytes;
        const auto character = printableText.substr(0, bytes);
        const std::string blank(static_cast<std::size_t>(columnsOf(character)), ' ');
        rows[0] += blank;
        rows[1] += character;
        rows[2] += blank;
        printableText.remove_prefix(bytes);
    }
    return rows;
}

}  // namespace kestrix::cli
