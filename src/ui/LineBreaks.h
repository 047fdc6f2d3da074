#pragma once

#include <QString>

namespace kestrix::ui {

// A text that is wrapped in a cell, with a place to break the line behind every comma and semicolon, and none
// behind the hyphen of a wire's name. What is stored has none there ("IΔn=30mA,Type Of RCD=AC-G"), and would
// be broken inside a word; and "PE=0V" at the beginning of a line would be read for what belongs to "N-PE".
// The marks are invisible and have no width; they are for showing and measuring only, never for storing or
// copying.
QString withLineBreaks(const QString& text);

}  // namespace kestrix::ui
