#include "ui/Palette.h"

namespace kestrix::ui {

Palette& Palette::shared() {
    static Palette palette;
    return palette;
}

}  // namespace kestrix::ui
