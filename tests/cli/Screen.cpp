#include "tests/cli/Screen.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace kestrix::cli {
namespace {

std::size_t characterBytes(char first) {
    const auto byte = static_cast<unsigned char>(first);
    return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

}  // namespace

Screen::Screen(int rows, int columns)
    : rows_(rows),
      columns_(columns),
      cells_(static_cast<std::size_t>(rows),
             std::vector<std::string>(static_cast<std::size_t>(columns), " ")) {}

void Screen::write(std::string_view bytes) {
    rest_ += bytes;
    std::string_view left = rest_;
    while (!left.empty()) {
        std::size_t taken = 0;
        if (left.front() == '\x1b') {
            taken = takeSequence(left);
        } else if (left.size() >= characterBytes(left.front())) {
            taken = characterBytes(left.front());
            put(std::string(left.substr(0, taken)));
        }
        if (taken == 0) break;
        left.remove_prefix(taken);
    }
    rest_ = std::string(left);
}

std::size_t Screen::takeSequence(std::string_view bytes) {
    if (bytes.size() < 2) return 0;
    if (bytes[1] != '[') {
        unknown_ += bytes.substr(1, 1);
        return 2;
    }
    const auto end =
        std::find_if(bytes.begin() + 2, bytes.end(), [](char c) { return c >= '@' && c <= '~'; });
    if (end == bytes.end()) return 0;
    const auto length = static_cast<std::size_t>(end - bytes.begin());
    sequence(std::string(bytes.substr(2, length - 2)), *end);
    return length + 1;
}

void Screen::sequence(const std::string& parameters, char command) {
    if (parameters == "?25" && (command == 'l' || command == 'h')) {
        cursorVisible_ = command == 'h';
    } else if (command == 'A') {
        row_ = std::max(row_ - std::max(std::atoi(parameters.c_str()), 1), 0);  // NOLINT(cert-err34-c)
    } else if (command == 'H' && parameters.empty()) {
        row_ = column_ = 0;
    } else if (command == 'K' && parameters.empty()) {
        std::fill(cells_[static_cast<std::size_t>(row_)].begin() + std::min(column_, columns_ - 1),
                  cells_[static_cast<std::size_t>(row_)].end(), " ");
    } else if (command == 'J' && (parameters.empty() || parameters == "2")) {
        if (parameters.empty()) {
            clear(row_, column_);
        } else {
            clear(0, 0);
        }
    } else if (command == 'm') {
        // 30 to 47 and 90 to 107 are colours; 0 to 29 are weights and their ends.
        const int number =
            std::atoi(parameters.substr(parameters.rfind(';') + 1).c_str());  // NOLINT(cert-err34-c)
        coloured_ = coloured_ || number >= 30;
    } else {
        unknown_ += "[" + parameters + command;
    }
}

void Screen::clear(int row, int column) {
    for (; row < rows_; ++row, column = 0) {
        auto& cells = cells_[static_cast<std::size_t>(row)];
        std::fill(cells.begin() + std::min(column, columns_), cells.end(), " ");
    }
}

void Screen::put(const std::string& character) {
    if (character == "\r") {
        column_ = 0;
    } else if (character == "\n") {
        lineFeed();
    } else if (static_cast<unsigned char>(character.front()) < 0x20) {
        unknown_ += character;
    } else {
        if (column_ == columns_) {  // the line before was full to its end
            column_ = 0;
            lineFeed();
        }
        cells_[static_cast<std::size_t>(row_)][static_cast<std::size_t>(column_++)] = character;
    }
}

void Screen::lineFeed() {
    if (++row_ < rows_) return;
    row_ = rows_ - 1;
    std::rotate(cells_.begin(), cells_.begin() + 1, cells_.end());
    std::fill(cells_.back().begin(), cells_.back().end(), " ");
}

std::string Screen::text() const {
    std::string text;
    for (const auto& cells : cells_) {
        std::string line;
        for (const auto& cell : cells) line += cell;
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace kestrix::cli
