#include "ui/Label.h"

namespace kestrix::ui {

void Label::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    changed();
}

void Label::setBackgroundColor(const QColor& color) {
    if (color == background_) return;
    background_ = color;
    changed();
}

void Label::setTextColor(const QColor& color) {
    style_.textColor = color;
    changed();
}

void Label::setFont(const QString& family, int size) {
    style_.family = family;
    style_.size = size;
    changed();
}

void Label::setAlignment(Qt::AlignmentFlag alignment) {
    style_.alignment = alignment;
    changed();
}

void Label::setShrinksToFit(bool shrinks) {
    style_.shrinksToFit = shrinks;
    changed();
}

bool Label::tell() {
    bool told = Control::tell();
    told |= tellChange(*this, toldText_, text_, &Label::textChanged);
    told |= tellChange(*this, toldBackground_, background_, &Label::backgroundColorChanged);
    told |= tellChange(*this, toldStyle_, style_, &Label::styleChanged);
    return told;
}

}  // namespace kestrix::ui
