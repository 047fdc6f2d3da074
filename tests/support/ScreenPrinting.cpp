// Of what only tests of screens have.
#include <QColor>

#include <ostream>

#include "tests/support/Printing.h"
#include "ui/ScreenId.h"

void PrintTo(const QColor& colour, std::ostream* out) {
    *out << colour.name().toStdString();
    if (colour.alpha() < 255) *out << " at " << colour.alpha() * 100 / 255 << " %";
}

namespace kestrix::ui {

void PrintTo(ScreenId id, std::ostream* out) {
    const char* const name = nameOf(id);
    *out << (name != nullptr ? name : "no screen");
}

}  // namespace kestrix::ui
