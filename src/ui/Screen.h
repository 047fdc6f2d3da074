#pragma once

#include <QHash>
#include <QObject>
#include <QString>

#include "ui/Button.h"
#include "ui/ImageView.h"
#include "ui/Label.h"
#include "ui/ScreenId.h"

namespace kestrix::ui {

// One screen: all its state and behaviour, without a picture of it. A QML file draws it, and finds the
// controls under their names.
class Screen : public QObject {
    Q_OBJECT

  public:
    explicit Screen(ScreenId id) : id_(id) {}

    ScreenId id() const { return id_; }

    // Calls viewDidLoad, once.
    void loadView();
    bool isViewLoaded() const { return loaded_; }

    // None, with a warning, for a name that no control of this kind has.
    Q_INVOKABLE kestrix::ui::Label* label(const QString& name) const;
    Q_INVOKABLE kestrix::ui::ImageView* imageView(const QString& name) const;
    Q_INVOKABLE kestrix::ui::Button* button(const QString& name) const;

    virtual void viewDidLoad() {}
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}

  private:
    friend class Control;
    void add(Control& control);
    template <class Kind>
    Kind* find(const QString& name) const;

    ScreenId id_;
    bool loaded_ = false;
    QHash<QString, Control*> controls_;  // members of the screen's own class
};

}  // namespace kestrix::ui
