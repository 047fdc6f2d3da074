#pragma once

#include <QString>

namespace kestrix::ui {

// A text that is wrapped in a cell, with a place to break the line behind every comma and semicolon. What is
// stored has none there ("IΔn=30mA,Type Of RCD=AC-G"), and would be broken inside a word. The places are
// invisible and have no width; they are for showing and measuring only, never for storing or copying.
QString withLineBreaks(const QString& text);

}  // namespace kestrix::ui
