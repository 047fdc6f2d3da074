#pragma once

#include <QObject>
#include <QString>

namespace kestrix::ui {

class Screen;

// What stands on a screen under a name of its own. State is kept at once; the signals, for the view, come
// with the next round of DisplayUpdates.
class Control : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hidden READ hidden NOTIFY hiddenChanged FINAL)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY accessibleNameChanged FINAL)

  public:
    // The screen finds the control under this name, and must outlive it.
    Control(Screen& screen, const char* name);
    ~Control() override;

    bool hidden() const { return hidden_; }
    void setHidden(bool hidden);

    // What a screen reader says; empty: what the control shows.
    QString accessibleName() const { return accessibleName_; }
    void setAccessibleName(const QString& name);

    // The view takes the keyboard to it.
    void takeKeyboard() { Q_EMIT keyboardAsked(); }

  Q_SIGNALS:
    void keyboardAsked();
    void hiddenChanged();
    void accessibleNameChanged();

  protected:
    // Something that the display shows differs now.
    void changed();
    // Notes the signals of what differs from the last time; they are emitted when this has returned, for as
    // long as the control lives. False when nothing differs.
    virtual bool tell();
    // Notes `signal`, and makes `told` the same as `now`, when they differ. False when they do not.
    template <class Self, class Value>
    static bool tellChange(Self&, Value& told, const Value& now, void (Self::*signal)()) {
        if (told == now) return false;
        told = now;
        note(static_cast<Signal>(signal));
        return true;
    }

  private:
    friend class DisplayUpdates;
    friend class Screen;
    using Signal = void (Control::*)();
    static void note(Signal signal);

    bool hidden_ = false;
    bool toldHidden_ = false;
    bool waiting_ = false;
    QString accessibleName_;
    QString toldAccessibleName_;
};

}  // namespace kestrix::ui
