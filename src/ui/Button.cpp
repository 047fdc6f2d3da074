#include "ui/Button.h"

#include "ui/KeyRules.h"

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

bool Button::pressKey(int key, int modifiers, bool repeated) {
    if (!KeyRules::presses(key, modifiers)) return false;
    if (!repeated) press();
    return true;
}

bool Button::tell() {
    bool told = Control::tell();
    told |= tellChange(*this, toldTitle_, title_, &Button::titleChanged);
    told |= tellChange(*this, toldImages_, std::pair(image_, backgroundImage_), &Button::imageChanged);
    return told;
}

}  // namespace kestrix::ui
