#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

// Reads docs/frame-format.md: its lines, its tables and what stands in their cells.
namespace kestrix::testing {

using Row = std::vector<std::string>;

inline const std::vector<std::string>& document() {
    static const std::vector<std::string> lines = [] {
        std::ifstream file(KESTRIX_SOURCE_DIR "/docs/frame-format.md");
        std::vector<std::string> all;
        for (std::string line; std::getline(file, line);) all.push_back(line);
        return all;
    }();
    return lines;
}

inline Row cellsOf(const std::string& line) {
    Row cells;
    std::istringstream text(line.substr(1));
    for (std::string cell; std::getline(text, cell, '|');) {
        const std::size_t first = cell.find_first_not_of(' ');
        cells.push_back(
            first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
    }
    return cells;
}

// The rows of the table with this head, which stands in the document once.
inline std::vector<Row> table(const std::string& head) {
    std::vector<Row> rows;
    const auto& lines = document();
    auto line = std::find(lines.begin(), lines.end(), head);
    EXPECT_NE(line, lines.end()) << head;
    for (line += line == lines.end() ? 0 : 2; line != lines.end() && line->starts_with("|"); ++line)
        rows.push_back(cellsOf(*line));
    EXPECT_FALSE(rows.empty()) << head;
    return rows;
}

inline std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(", ", at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end + 2;
    }
    return parts;
}

// What a cell says: `V` is V, "blank" is one blank, "empty" is nothing.
inline std::string plain(const std::string& cell) {
    if (cell == "blank") return " ";
    if (cell == "empty") return "";
    if (cell.size() >= 2 && cell.front() == '`' && cell.back() == '`') return cell.substr(1, cell.size() - 2);
    return cell;
}

inline std::vector<std::string> texts(const std::string& cell) {
    std::vector<std::string> all;
    for (const std::string& part : split(cell)) all.push_back(plain(part));
    return all;
}

// "4-5, 8-15" and "3".
inline std::vector<std::size_t> numbers(const std::string& cell) {
    std::vector<std::size_t> all;
    for (const std::string& part : split(cell)) {
        const std::size_t dash = part.find('-');
        const std::size_t first = std::stoul(part);
        const std::size_t last = dash == std::string::npos ? first : std::stoul(part.substr(dash + 1));
        for (std::size_t i = first; i <= last; ++i) all.push_back(i);
    }
    return all;
}

}  // namespace kestrix::testing
