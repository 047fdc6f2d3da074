#pragma once

#include <QString>

#include "ui/Button.h"
#include "ui/Label.h"
#include "ui/Screen.h"
#include "ui/Services.h"

namespace kestrix::ui {

// A screen that is presented, in the frame that all of them share: a toolbar with its title and a back
// button. `ScreenFrame` draws it. Back button, Escape and the Back key close it.
class FramedScreen : public kestrix::ui::Screen {
    Q_OBJECT
    Q_PROPERTY(QString name READ name NOTIFY nameChanged FINAL)
    Q_PROPERTY(kestrix::ui::Label* titleLabel READ titleLabel CONSTANT FINAL)
    Q_PROPERTY(kestrix::ui::Button* backButton READ backButton CONSTANT FINAL)

  public:
    // titleName: under which the title is found.
    FramedScreen(ScreenId id, const Services& services, const char* titleName = "screenTitle");

    // What it is, for a screen reader; its title, too, until it gets another.
    QString name() const { return name_; }
    void setName(const QString& name);

    // The title; a screen may change it while it is shown.
    void setTitle(const QString& title) { screenTitle.setText(title); }

    // Whether it can be left by back button, Escape and Back. One that cannot has no back button, and must
    // offer another way out.
    void setClosable(bool closable) { btnBack.setHidden(!closable); }
    bool isClosable() const { return !btnBack.hidden(); }

    // The user wants to leave: dismisses the screen, animated.
    virtual void pressBack();

    bool pressKey(int key, int modifiers, bool repeated) override;

    Label* titleLabel() { return &screenTitle; }
    Button* backButton() { return &btnBack; }

    Label screenTitle;
    Button btnBack{*this, "btnBack", Button::Event::TouchDown};

  Q_SIGNALS:
    void nameChanged();

  protected:
    Services services_;

  private:
    QString name_;
};

}  // namespace kestrix::ui
