#include "ui/Screen.h"

#include <QLoggingCategory>

#include <utility>

#include "ui/DisplayUpdates.h"

namespace kestrix::ui {
namespace {

Q_LOGGING_CATEGORY(lcUi, "kestrix.ui", QtWarningMsg)

}  // namespace

void Screen::loadView() {
    if (loaded_) return;
    loaded_ = true;
    viewDidLoad();
}

Label* Screen::label(const QString& name) const {
    return find<Label>(name);
}

ImageView* Screen::imageView(const QString& name) const {
    return find<ImageView>(name);
}

Button* Screen::button(const QString& name) const {
    return find<Button>(name);
}

TextField* Screen::textField(const QString& name) const {
    return find<TextField>(name);
}

ScrollArea* Screen::scrollArea(const QString& name) const {
    return find<ScrollArea>(name);
}

Table* Screen::table(const QString& name) const {
    return find<Table>(name);
}

void Screen::setCovered(bool covered) {
    if (covered == covered_) return;
    covered_ = covered;
    if (!covered_) {
        for (const QPointer<Control>& control : std::as_const(controls_)) {
            if (control) control->changed();
        }
        // Before anything of it is drawn: what it showed when it was covered is long out of date.
        DisplayUpdates::shared().flush();
    }
    Q_EMIT coveredChanged();
}

bool Screen::pressKey(int, int, bool) {
    return false;
}

void Screen::add(Control& control) {
    controls_.insert(control.objectName(), &control);
}

template <class Kind>
Kind* Screen::find(const QString& name) const {
    auto* const found = qobject_cast<Kind*>(controls_.value(name).data());
    if (found == nullptr)
        qCWarning(lcUi, "%s has no %s named '%s'", metaObject()->className(),
                  Kind::staticMetaObject.className(), qPrintable(name));
    return found;
}

}  // namespace kestrix::ui
