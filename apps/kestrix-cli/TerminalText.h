#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "apps/common/PrintableText.h"

namespace kestrix::cli {

using app::printable;

// Columns that a printable text takes: combining characters none, East Asian wide ones and emoji two.
int columnsOf(std::string_view text);

// The printable text if it fits into `columns`, else its beginning by whole characters with "…" at the end.
std::string clipped(std::string_view text, int columns);

// How a piece of text stands out where the terminal has colours.
enum class Ink { Plain, Dim, Bold, Lit, Good, Bad, Warning };

struct Span {
    std::string text;  // printable
    Ink ink = Ink::Plain;
};

// One line of the display.
using Row = std::vector<Span>;

int columnsOf(const Row& row);
Row clipped(const Row& row, int columns);

// The row's texts, with the escape codes of their inks when `colour` is set.
std::string rendered(const Row& row, bool colour);

}  // namespace kestrix::cli
