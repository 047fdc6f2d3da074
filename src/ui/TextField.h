#pragma once

#include <QString>

#include <functional>
#include <utility>

#include "ui/Control.h"

namespace kestrix::ui {

// One line of text that the user edits: any text, of any length, in any script. What is typed is here at
// once.
class TextField : public kestrix::ui::Control {
    Q_OBJECT
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)
    Q_PROPERTY(QString placeholder READ placeholder NOTIFY placeholderChanged FINAL)
    Q_PROPERTY(bool secret READ isSecret CONSTANT FINAL)
    Q_PROPERTY(bool locked READ isLocked NOTIFY lockedChanged FINAL)

  public:
    using Control::Control;

    QString text() const { return text_; }
    void setText(const QString& text);

    // Shown in grey while the field is empty. It is never the text.
    QString placeholder() const { return placeholder_; }
    void setPlaceholder(const QString& placeholder);

    // A password: what is typed is drawn as dots, read by nobody, and learned by no input method. To be set
    // before the field is shown.
    void setSecret(bool secret) { secret_ = secret; }
    bool isSecret() const { return secret_; }

    // Nothing can be typed while it is locked.
    void setLocked(bool locked);
    bool isLocked() const { return locked_; }

    // Called when the Return key is pressed in the field; false: editing goes on. None: editing ends.
    void setReturnAction(std::function<bool()> action) { returnAction_ = std::move(action); }
    // Called when the user has changed the text.
    void setEditAction(std::function<void()> action) { editAction_ = std::move(action); }

    bool isEditing() const { return editing_; }
    // Takes the keyboard away from the field.
    void endEditing();

    // For the view: what the user typed, the Return key, and whether the field has the keyboard.
    Q_INVOKABLE void edit(const QString& text);
    Q_INVOKABLE void pressReturn();
    Q_INVOKABLE void setEditing(bool editing) { editing_ = editing; }

  Q_SIGNALS:
    void textChanged();
    void placeholderChanged();
    void lockedChanged();
    // The view lets go of the keyboard.
    void editingEnded();

  protected:
    bool tell() override;

  private:
    QString text_;
    QString toldText_;
    QString placeholder_;
    QString toldPlaceholder_;
    bool secret_ = false;
    bool locked_ = false;
    bool toldLocked_ = false;
    std::function<bool()> returnAction_;
    std::function<void()> editAction_;
    bool editing_ = false;
};

}  // namespace kestrix::ui
