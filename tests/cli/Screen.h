#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrix::cli {

// A small terminal: what stands on its screen after all that was written to it. Every character is one column
// wide.
class Screen {
  public:
    Screen(int rows, int columns);

    // Pieces may end anywhere, within a character or a sequence too.
    void write(std::string_view bytes);

    // The rows from the top, without the blanks at their ends, each with a line end.
    std::string text() const;
    bool cursorVisible() const { return cursorVisible_; }
    bool coloured() const { return coloured_; }              // any colour so far
    const std::string& unknown() const { return unknown_; }  // sequences that it does not know

  private:
    void put(const std::string& character);
    void lineFeed();
    void sequence(const std::string& parameters, char command);
    std::size_t takeSequence(std::string_view bytes);
    void clear(int row, int column);

    int rows_;
    int columns_;
    int row_ = 0;
    int column_ = 0;
    bool cursorVisible_ = true;
    bool coloured_ = false;
    std::string unknown_;
    std::string rest_;  // of an unfinished character or sequence
    std::vector<std::vector<std::string>> cells_;
};

}  // namespace kestrix::cli
