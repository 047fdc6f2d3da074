#include "ui/Control.h"

#include "ui/DisplayUpdates.h"
#include "ui/Screen.h"

namespace kestrix::ui {

// A control with a parent is not the script engine's to destroy.
Control::Control(Screen& screen, const char* name) : QObject(&screen) {
    setObjectName(QLatin1String(name));
    screen.add(*this);
}

Control::~Control() {
    if (waiting_) DisplayUpdates::shared().remove(*this);
}

void Control::setHidden(bool hidden) {
    if (hidden == hidden_) return;
    hidden_ = hidden;
    changed();
}

void Control::setAccessibleName(const QString& name) {
    if (name == accessibleName_) return;
    accessibleName_ = name;
    changed();
}

void Control::changed() {
    if (waiting_ || static_cast<const Screen*>(parent())->isCovered()) return;
    waiting_ = true;
    DisplayUpdates::shared().add(*this);
}

void Control::note(Signal signal) {
    DisplayUpdates::shared().differing_.push_back(signal);
}

bool Control::tell() {
    bool told = tellChange(*this, toldHidden_, hidden_, &Control::hiddenChanged);
    told |= tellChange(*this, toldAccessibleName_, accessibleName_, &Control::accessibleNameChanged);
    return told;
}

}  // namespace kestrix::ui
