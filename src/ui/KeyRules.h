#pragma once

#include <QObject>

namespace kestrix::ui {

// What keys mean wherever they mean the same: one rule for the controllers and for the views, which ask it by
// this name.
class KeyRules : public QObject {
    Q_OBJECT

  public:
    static KeyRules& shared();

    // Whether these modifiers leave a key what it is. Ctrl, Alt and their like belong to the desktop and to
    // input methods; that a key stands on the number pad makes no difference.
    static bool arePlain(int modifiers);
    // Whether it is one of the keys that press the button that has the keyboard.
    Q_INVOKABLE static bool presses(int key, int modifiers);
    // Whether it is one of the keys that lead back: out of a screen, or to an alert's cancel button.
    Q_INVOKABLE static bool leadsBack(int key, int modifiers);
};

}  // namespace kestrix::ui
