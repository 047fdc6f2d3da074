#include "apps/kestrix-cli/TextTable.h"

#include <algorithm>

#include "apps/kestrix-cli/TerminalText.h"

namespace kestrix::cli {
namespace {

constexpr std::size_t kGap = 2;

// Of a text of 100 kB only the beginning can be seen; the longest character has four bytes, and combining
// ones take no column.
constexpr std::size_t kMostBytes = std::size_t{16} * TextTable::kWidestColumn;

}  // namespace

TextTable::TextTable(const std::vector<std::string>& titles) : widths_(titles.size(), 0) {
    add(titles);
}

void TextTable::add(const std::vector<std::string>& texts) {
    Line& line = lines_.emplace_back();
    for (std::size_t i = 0; i < widths_.size(); ++i) {
        const bool cut = texts[i].size() > kMostBytes;
        std::string text = clipped(printable(cut ? texts[i].substr(0, kMostBytes) : texts[i]), kWidestColumn);
        const int columns = columnsOf(text);
        widths_[i] = std::max(widths_[i], columns);
        line.push_back({std::move(text), columns});
    }
}

bool TextTable::write(Output& output) const {
    std::string all;
    for (const Line& line : lines_) {
        std::string written;
        for (std::size_t i = 0; i < line.size(); ++i) {
            written += line[i].text;
            written.append(static_cast<std::size_t>(widths_[i] - line[i].columns) + kGap, ' ');
        }
        written.erase(written.find_last_not_of(' ') + 1);
        all += written;
        all += '\n';
    }
    return output.write(all);
}

}  // namespace kestrix::cli
