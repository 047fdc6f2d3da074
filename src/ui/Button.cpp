#include "ui/Button.h"

namespace kestrix::ui {

void Button::setTitle(const QString& title) {
    title_ = title;
    changed();
}

void Button::setImage(const QString& name) {
    image_ = name;
    changed();
}

void Button::setBackgroundImage(const QString& name) {
    backgroundImage_ = name;
    changed();
}

void Button::press() {
    if (action_ && !hidden()) action_();
}

void Button::tell() {
    Control::tell();
    KESTRIX_TELL(toldTitle_, title_, titleChanged);
    KESTRIX_TELL(toldImages_, std::pair(image_, backgroundImage_), imageChanged);
}

}  // namespace kestrix::ui
