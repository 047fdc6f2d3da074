#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

#include "ui/Button.h"
#include "ui/ImageView.h"
#include "ui/Label.h"
#include "ui/ScreenId.h"
#include "ui/ScrollArea.h"
#include "ui/Table.h"
#include "ui/TextField.h"

namespace kestrix::ui {

// One screen: all its state and behaviour, without a picture of it. A QML file draws it, and finds the
// controls under their names.
class Screen : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool covered READ isCovered NOTIFY coveredChanged FINAL)

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
    Q_INVOKABLE kestrix::ui::TextField* textField(const QString& name) const;
    Q_INVOKABLE kestrix::ui::ScrollArea* scrollArea(const QString& name) const;
    Q_INVOKABLE kestrix::ui::Table* table(const QString& name) const;

    // Whether another screen lies in front of all of it. A covered screen goes on working, but is not drawn,
    // and neither the keyboard nor a screen reader finds it; its controls tell the display nothing until it
    // can be seen.
    bool isCovered() const { return covered_; }
    void setCovered(bool covered);

    // A key went down, or repeats itself, that none of its controls has used. True when it is used up.
    Q_INVOKABLE virtual bool pressKey(int key, int modifiers, bool repeated);

    virtual void viewDidLoad() {}
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}

  Q_SIGNALS:
    void coveredChanged();

  private:
    friend class Control;
    void add(Control& control);
    template <class Kind>
    Kind* find(const QString& name) const;

    ScreenId id_;
    bool loaded_ = false;
    bool covered_ = false;
    QHash<QString, QPointer<Control>> controls_;  // not owned; one that is destroyed is forgotten
};

}  // namespace kestrix::ui
