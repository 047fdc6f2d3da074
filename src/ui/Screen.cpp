#include "ui/Screen.h"

#include <QLoggingCategory>

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

void Screen::add(Control& control) {
    controls_.insert(control.objectName(), &control);
}

template <class Kind>
Kind* Screen::find(const QString& name) const {
    auto* const found = qobject_cast<Kind*>(controls_.value(name));
    if (found == nullptr)
        qCWarning(lcUi, "%s has no %s named '%s'", metaObject()->className(),
                  Kind::staticMetaObject.className(), qPrintable(name));
    return found;
}

}  // namespace kestrix::ui
