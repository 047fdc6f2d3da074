#include "ui/TextField.h"

#include <QPointer>

namespace kestrix::ui {

void TextField::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    changed();
}

void TextField::setPlaceholder(const QString& placeholder) {
    if (placeholder == placeholder_) return;
    placeholder_ = placeholder;
    changed();
}

void TextField::setLocked(bool locked) {
    if (locked == locked_) return;
    locked_ = locked;
    changed();
}

void TextField::endEditing() {
    if (editing_) Q_EMIT editingEnded();
}

void TextField::edit(const QString& text) {
    if (text == text_ || locked_) return;
    text_ = text;
    toldText_ = text;  // it comes from there
    const std::function<void()> action = editAction_;
    if (action) action();  // may destroy this field
}

void TextField::pressReturn() {
    const std::function<bool()> action = returnAction_;
    if (!action) return endEditing();
    const QPointer<TextField> self(this);
    const bool ends = action();
    if (self && ends) endEditing();
}

bool TextField::tell() {
    bool told = Control::tell();
    told |= tellChange(*this, toldText_, text_, &TextField::textChanged);
    told |= tellChange(*this, toldPlaceholder_, placeholder_, &TextField::placeholderChanged);
    told |= tellChange(*this, toldLocked_, locked_, &TextField::lockedChanged);
    return told;
}

}  // namespace kestrix::ui
