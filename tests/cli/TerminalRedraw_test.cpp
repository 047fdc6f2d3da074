#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "apps/kestrix-cli/TerminalDisplay.h"

namespace kestrix::cli {
namespace {

using Lines = std::vector<std::string>;

// A terminal of ASCII cells: CR, LF, cursor up, erase to the end of the line and of the screen, scrolling,
// and a cursor that stays on the last column after a character there until the next one wraps.
class Terminal {
  public:
    Terminal(std::size_t columns, std::size_t rows)
        : columns_(columns), screen_(rows, std::string(columns, ' ')) {}

    void write(const std::string& text) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '\r') {
                column_ = 0;
            } else if (text[i] == '\n') {
                lineFeed();
            } else if (text[i] == '\x1b') {
                i = command(text, i + 1);
            } else {
                put(text[i]);
            }
        }
    }

    // The lines down to the cursor's, without the blanks at their ends.
    Lines shown() const {
        Lines lines;
        for (auto line : screen_) lines.push_back(line.erase(line.find_last_not_of(' ') + 1));
        return lines;
    }
    std::size_t row() const { return row_; }
    std::size_t column() const { return column_; }
    std::size_t characters() const { return characters_; }

  private:
    void put(char c) {
        if (column_ == columns_) {
            column_ = 0;
            lineFeed();
        }
        screen_[row_][column_++] = c;
        ++characters_;
    }

    void lineFeed() {
        if (row_ + 1 < screen_.size()) {
            ++row_;
            return;
        }
        screen_.erase(screen_.begin());
        screen_.emplace_back(columns_, ' ');
    }

    std::size_t command(const std::string& text, std::size_t at) {
        EXPECT_EQ(text[at], '[');
        std::size_t count = 0;
        bool given = false;
        for (++at; text[at] >= '0' && text[at] <= '9'; ++at) {
            count = count * 10 + static_cast<std::size_t>(text[at] - '0');
            given = true;
        }
        const auto column = std::min(column_, columns_ - 1);
        switch (text[at]) {
            case 'A':
                row_ -= std::min(row_, given ? count : 1);
                break;
            case 'K':
                screen_[row_].replace(column, std::string::npos, columns_ - column, ' ');
                break;
            case 'J':
                screen_[row_].replace(column, std::string::npos, columns_ - column, ' ');
                for (auto r = row_ + 1; r < screen_.size(); ++r) screen_[r].assign(columns_, ' ');
                break;
            default:
                ADD_FAILURE() << "unknown command " << text[at];
        }
        return at;
    }

    std::size_t columns_;
    Lines screen_;
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    std::size_t characters_ = 0;
};

// After each step the terminal shows the new lines under what stood there before, and nothing below them.
void expectShown(const std::vector<Lines>& steps, std::size_t columns = 10, std::size_t rows = 12,
                 const Lines& before = {"$ monitor"}) {
    Terminal terminal(columns, rows);
    for (const auto& line : before) terminal.write(line + "\r\n");
    Lines previous;
    for (const auto& next : steps) {
        terminal.write(redrawInPlace(previous, next));
        const auto shown = terminal.shown();
        ASSERT_GE(terminal.row(), next.size());
        const Lines at(shown.begin() + static_cast<std::ptrdiff_t>(terminal.row() - next.size()),
                       shown.begin() + static_cast<std::ptrdiff_t>(terminal.row()));
        ASSERT_EQ(at, next);
        for (auto r = terminal.row(); r < shown.size(); ++r) ASSERT_EQ(shown[r], "") << "left behind";
        ASSERT_EQ(terminal.column(), 0U);
        previous = next;
    }
}

TEST(TerminalRedraw, NothingChangedWritesNothing) {
    EXPECT_EQ(redrawInPlace({"a", "b"}, {"a", "b"}), "");
    EXPECT_EQ(redrawInPlace({}, {}), "");
}

TEST(TerminalRedraw, FirstPicture) {
    expectShown({{"one", "two"}});
}

TEST(TerminalRedraw, ChangedLinesOnly) {
    expectShown({{"one", "two", "three"}, {"one", "TWO!", "three"}, {"1", "TWO!", "3"}});
    const auto text = redrawInPlace({"one", "two", "three"}, {"one", "2", "three"});
    EXPECT_EQ(text.find("one"), std::string::npos);
    EXPECT_EQ(text.find("three"), std::string::npos);
}

TEST(TerminalRedraw, ShorterLinesLeaveNothingBehind) {
    expectShown({{"long line"}, {"x"}, {""}});
}

TEST(TerminalRedraw, LinesAsWideAsTheTerminal) {
    expectShown({{"0123456789", "abcdefghij"}, {"9876543210", "abcdefghij"}, {"9876543210", "jihgfedcba"}});
}

TEST(TerminalRedraw, HeightsDiffer) {
    expectShown({{"1", "2", "3", "4"}, {"1", "2"}, {"a", "2", "c", "d", "e"}, {}, {"z"}});
}

TEST(TerminalRedraw, AtTheBottomOfTheTerminalItScrolls) {
    expectShown({{"1", "2"}, {"1", "2", "3", "4", "5"}, {"1", "b"}, {"1", "b", "c", "d"}}, 10, 6,
                {"a", "b", "c", "d", "e"});
}

TEST(TerminalRedraw, RandomPictures) {
    std::mt19937 random(7);
    std::vector<Lines> steps;
    for (int n = 0; n < 400; ++n) {
        Lines lines(random() % 8);
        for (auto& line : lines) line = std::string(random() % 11, static_cast<char>('a' + random() % 3));
        steps.push_back(lines);
    }
    expectShown(steps);
}

TEST(TerminalRedraw, UnchangedLinesAreNotWrittenAgain) {
    Terminal terminal(40, 12);
    Lines lines(10, "an unchanged line");
    terminal.write(redrawInPlace({}, lines));
    const auto before = terminal.characters();
    auto next = lines;
    next[4] = "changed";
    terminal.write(redrawInPlace(lines, next));
    EXPECT_EQ(terminal.characters() - before, 7U);
}

}  // namespace
}  // namespace kestrix::cli
