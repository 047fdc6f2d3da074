#include "ui/KeyRules.h"

#include <algorithm>
#include <iterator>

namespace kestrix::ui {
namespace {

constexpr int kPressingKeys[] = {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter};
constexpr int kKeysBack[] = {Qt::Key_Escape, Qt::Key_Back};

}  // namespace

KeyRules& KeyRules::shared() {
    static KeyRules rules;
    return rules;
}

bool KeyRules::arePlain(int modifiers) {
    return (modifiers & ~static_cast<int>(Qt::KeypadModifier)) == 0;
}

bool KeyRules::presses(int key, int modifiers) {
    return arePlain(modifiers) &&
           std::find(std::begin(kPressingKeys), std::end(kPressingKeys), key) != std::end(kPressingKeys);
}

bool KeyRules::leadsBack(int key, int modifiers) {
    return arePlain(modifiers) &&
           std::find(std::begin(kKeysBack), std::end(kKeysBack), key) != std::end(kKeysBack);
}

}  // namespace kestrix::ui
