#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <deque>
#include <functional>

namespace kestrix::ui {

// A question, or something that the user must have seen.
struct Alert {
    QString title{};
    QString text{};
    QStringList buttons{};  // at least one; the last one is what Enter presses at first
    int cancelButton = 0;   // index into `buttons`: what Escape and Back answer
    // Called once with the index of the button, behind the alert's going. None: nobody needs to know.
    std::function<void(int button)> answered{};
};

// The alerts, in front of everything: while one is shown it alone takes keys, touches and screen readers.
// Further ones wait until it is answered.
class Alerts : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged FINAL)
    Q_PROPERTY(QString title READ title NOTIFY shownChanged FINAL)
    Q_PROPERTY(QString text READ text NOTIFY shownChanged FINAL)
    Q_PROPERTY(QStringList buttons READ buttons NOTIFY shownChanged FINAL)
    Q_PROPERTY(int cancelButton READ cancelButton NOTIFY shownChanged FINAL)

  public:
    // owner: when it is destroyed, the alert goes unanswered. It is whoever `answered` speaks to.
    void show(Alert alert, const QObject& owner);

    // The answer to the alert that is shown. An index that it does not have, and an answer without one,
    // change nothing.
    Q_INVOKABLE void answer(int button);
    Q_INVOKABLE void cancel() { answer(cancelButton()); }

    // For the view: a key went down, or repeats itself, that none of its buttons used. Those that lead back
    // cancel. True when it is used up: nothing behind hears a key, but Tab goes on to the buttons.
    Q_INVOKABLE bool pressKey(int key, int modifiers, bool repeated);

    bool isShown() const { return !alerts_.empty(); }
    // Of the alert that is shown; empty without one.
    QString title() const { return current().title; }
    QString text() const { return current().text; }
    QStringList buttons() const { return current().buttons; }
    int cancelButton() const { return current().cancelButton; }

  Q_SIGNALS:
    void shownChanged();

  private:
    struct Owned {
        Alert alert;
        const QObject* owner;
        QMetaObject::Connection ownerGone;
    };
    const Alert& current() const;
    void forget(const QObject* owner);

    std::deque<Owned> alerts_;  // the first one is shown
};

}  // namespace kestrix::ui
