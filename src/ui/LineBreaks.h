#pragma once

#include <QString>

namespace kestrix::ui {

// A text that is wrapped in a cell, with a place to break the line behind every comma and semicolon, and none
// behind the hyphen of a wire's name and the colon of a limit's. What is stored has none there
// ("IΔn=30mA,Type Of RCD=AC-G"), and would be broken inside a word; and the "PE=0V" of "N-PE=0V" would be
// read by itself at the beginning of a line. The marks are invisible and have no width; they are for showing
// and measuring only, never for storing or copying.
QString withLineBreaks(const QString& text);

}  // namespace kestrix::ui
