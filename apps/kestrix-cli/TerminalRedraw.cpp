#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "apps/kestrix-cli/TerminalDisplay.h"

namespace kestrix::cli {
namespace {

constexpr const char* kEraseToEndOfLine = "\x1b[K";
constexpr const char* kEraseBelow = "\x1b[J";

std::string cursorUp(std::size_t lines) {
    return lines == 0 ? std::string() : "\x1b[" + std::to_string(lines) + "A";
}

}  // namespace

std::string redrawInPlace(const std::vector<std::string>& previous, const std::vector<std::string>& next) {
    if (previous == next) return {};
    std::string out = cursorUp(previous.size());
    for (std::size_t i = 0; i < next.size(); ++i) {
        // Erased first: behind a line that fills the terminal the cursor stands on its last character.
        if (i >= previous.size() || previous[i] != next[i]) out += kEraseToEndOfLine + next[i];
        out += "\r\n";
    }
    if (next.size() < previous.size()) out += kEraseBelow;
    return out;
}

}  // namespace kestrix::cli
