#include "ui/ScrollArea.h"

#include <algorithm>

namespace kestrix::ui {

ScrollArea::ScrollArea(Screen& screen, const char* name) : Control(screen, name) {
    using Held = KeyTable::Held;
    const auto page = [this] { return std::max(kStep, height_ - kStep); };
    keys_.add(
        Qt::Key_Up, [this] { scrollTo(position_ - kStep); }, Held::Repeats);
    keys_.add(
        Qt::Key_Down, [this] { scrollTo(position_ + kStep); }, Held::Repeats);
    keys_.add(
        Qt::Key_PageUp, [this, page] { scrollTo(position_ - page()); }, Held::Repeats);
    keys_.add(
        Qt::Key_PageDown, [this, page] { scrollTo(position_ + page()); }, Held::Repeats);
    keys_.add(Qt::Key_Home, [this] { scrollTo(0); });
    keys_.add(Qt::Key_End, [this] { scrollTo(contentHeight_); });
}

void ScrollArea::setContentHeight(double height) {
    contentHeight_ = height;
    changed();
}

void ScrollArea::setSeen(double position, double height) {
    position_ = position;
    height_ = height;
}

void ScrollArea::scrollTo(double position) {
    const double last = std::max(0.0, contentHeight_ - height_);
    position_ = std::clamp(position, 0.0, last);
    Q_EMIT scrollAsked();
}

bool ScrollArea::pressKey(int key, int modifiers, bool repeated) const {
    return keys_.press(key, modifiers, repeated);
}

bool ScrollArea::tell() {
    bool told = Control::tell();
    told |= tellChange(*this, toldContentHeight_, contentHeight_, &ScrollArea::contentHeightChanged);
    return told;
}

}  // namespace kestrix::ui
