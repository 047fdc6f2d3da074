#pragma once

#include <string>
#include <vector>

#include "apps/kestrix-cli/Output.h"

namespace kestrix::cli {

// A table for people: a line of titles and a line for each row, their columns below each other however wide
// their characters are. What a terminal cannot show is replaced, and a very long text cut.
class TextTable {
  public:
    static constexpr int kWidestColumn = 160;

    explicit TextTable(const std::vector<std::string>& titles);
    // As many texts as there are titles.
    void add(const std::vector<std::string>& texts);
    // False once nothing can be written any more.
    bool write(Output& output) const;

  private:
    struct Cell {
        std::string text;
        int columns;
    };
    using Line = std::vector<Cell>;

    std::vector<int> widths_;
    std::vector<Line> lines_;
};

}  // namespace kestrix::cli
