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

  Q_SIGNALS:
    void hiddenChanged();
    void accessibleNameChanged();

  protected:
    // Something that the display shows differs now.
    void changed();
    // Emits the signals of what differs from the last time. False when nothing does.
    virtual bool tell();
    // Emits `signal`, and makes `told` the same as `now`, when they differ. False when they do not.
    template <class Self, class Value>
    static bool tellChange(Self& self, Value& told, const Value& now, void (Self::*signal)()) {
        if (told == now) return false;
        told = now;
        (self.*signal)();
        return true;
    }

  private:
    friend class DisplayUpdates;
    friend class Screen;
    bool hidden_ = false;
    bool toldHidden_ = false;
    bool waiting_ = false;
    QString accessibleName_;
    QString toldAccessibleName_;
};

}  // namespace kestrix::ui
