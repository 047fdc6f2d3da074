#include "apps/kestrix-cli/LargeDigits.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <string_view>

#include "apps/kestrix-cli/TerminalText.h"

namespace kestrix::cli {
namespace {

using Rows = std::array<std::string, 3>;

TEST(LargeDigits, StandThreeRowsHigh) {
    EXPECT_EQ(largeDigits("-20.5"), (Rows{"    ╺━┓ ┏━┓   ┏━╸",  //
                                          "╺━╸ ┏━┛ ┃ ┃   ┗━┓",  //
                                          "    ┗━╸ ┗━┛ . ╺━┛"}));
}

TEST(LargeDigits, EveryDigitHasAShapeOfItsOwn) {
    std::set<Rows> shapes;
    for (const char digit : std::string_view("0123456789-.L ")) {
        const auto rows = largeDigits(std::string(1, digit));
        EXPECT_EQ(rows[0].find(digit == ' ' ? '0' : digit), std::string::npos);
        shapes.insert(rows);
    }
    EXPECT_EQ(shapes.size(), 14U);
}

TEST(LargeDigits, RowsAreEquallyWide) {
    for (const char* text : {"0123456789", "OL", "----", "> 99.9", "<1", "Ω漢", ""}) {
        const auto rows = largeDigits(text);
        EXPECT_EQ(columnsOf(std::string_view(rows[0])), columnsOf(std::string_view(rows[1]))) << text;
        EXPECT_EQ(columnsOf(std::string_view(rows[2])), columnsOf(std::string_view(rows[1]))) << text;
    }
}

TEST(LargeDigits, OtherCharactersStandInTheMiddleRow) {
    EXPECT_EQ(largeDigits(">Ω"), (Rows{"   ", "> Ω", "   "}));
}

}  // namespace
}  // namespace kestrix::cli
