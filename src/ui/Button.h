#pragma once

#include <QString>

#include <functional>
#include <utility>

#include "ui/Control.h"

namespace kestrix::ui {

// Something to press.
class Button : public kestrix::ui::Control {
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY titleChanged FINAL)
    Q_PROPERTY(QString image READ image NOTIFY imageChanged FINAL)
    Q_PROPERTY(QString backgroundImage READ backgroundImage NOTIFY imageChanged FINAL)
    Q_PROPERTY(bool actsOnTouchDown READ actsOnTouchDown CONSTANT FINAL)

  public:
    // When a press acts: the moment the finger lands, or when it is lifted inside.
    enum class Event { TouchDown, TouchUpInside };

    Button(Screen& screen, const char* name, Event event) : Control(screen, name), event_(event) {}

    bool actsOnTouchDown() const { return event_ == Event::TouchDown; }
    void setAction(std::function<void()> action) { action_ = std::move(action); }

    QString title() const { return title_; }
    void setTitle(const QString& title);
    QString image() const { return image_; }
    void setImage(const QString& name);
    QString backgroundImage() const { return backgroundImage_; }
    void setBackgroundImage(const QString& name);

    // The press: by finger, mouse, key or screen reader. Nothing happens while it is hidden.
    Q_INVOKABLE void press();
    // A key went down, or repeats itself, while the button has the keyboard. True when it is one that presses
    // buttons, and without modifiers: then it is used up. Held down, it presses once.
    Q_INVOKABLE bool pressKey(int key, int modifiers, bool repeated);

  Q_SIGNALS:
    void titleChanged();
    void imageChanged();

  protected:
    bool tell() override;

  private:
    Event event_;
    std::function<void()> action_;
    QString title_;
    QString toldTitle_;
    QString image_;
    QString backgroundImage_;
    std::pair<QString, QString> toldImages_;
};

}  // namespace kestrix::ui
