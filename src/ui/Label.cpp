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

void Label::tell() {
    Control::tell();
    KESTRIX_TELL(toldText_, text_, textChanged);
    KESTRIX_TELL(toldBackground_, background_, backgroundColorChanged);
    KESTRIX_TELL(toldStyle_, style_, styleChanged);
}

}  // namespace kestrix::ui
