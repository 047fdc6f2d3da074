#pragma once

#include <QObject>
#include <QString>

#include <chrono>
#include <deque>
#include <functional>

#include "platform/Scheduler.h"

namespace kestrix::ui {

// A line that comes over whatever screen is shown and goes by itself after some seconds. It holds nothing up:
// it takes neither the keyboard nor a touch beside its action. Several in a row are shown one after the
// other.
class Notice : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged FINAL)
    Q_PROPERTY(QString text READ text NOTIFY shownChanged FINAL)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY shownChanged FINAL)

  public:
    // How long one is shown, and how long at least when another one waits behind it.
    static constexpr std::chrono::milliseconds kDuration{5000};
    static constexpr std::chrono::milliseconds kLeastDuration{2000};
    // With more than these waiting, the oldest of them is dropped: what is shown minutes late helps nobody.
    static constexpr std::size_t kMostWaiting = 4;

    // The scheduler outlives the notice.
    explicit Notice(platform::Scheduler& scheduler) : scheduler_(scheduler) {}

    // Shows the line at once, or when those before it have had their time. A text that is the last in line
    // already is not shown twice: it has its time anew.
    void show(const QString& text);
    // The same; one of before about the same matter, shown or waiting, gives its place to it. An empty matter
    // is none.
    void show(const QString& text, const QString& matter);
    // The same with something to do about it: `action` is called when the user presses `actionTitle`. owner:
    // whoever the action speaks to; when it is destroyed, the line stays and its action goes.
    void show(const QString& text, const QString& actionTitle, std::function<void()> action,
              const QObject& owner);

    // The user's press: the line goes, and its action is called. Nothing happens without an action.
    Q_INVOKABLE void pressAction();
    // Takes away what is shown and what waits.
    void clear();

    // While it is held nothing is shown, and the time of no line passes: something else wants to be seen
    // first. Then the line has its whole time.
    void setHeld(bool held);

    bool isShown() const { return !lines_.empty() && !held_; }
    // Of the line that is shown; empty without one.
    QString text() const { return isShown() ? lines_.front().text : QString(); }
    QString actionTitle() const { return isShown() ? lines_.front().actionTitle : QString(); }

  Q_SIGNALS:
    // Between two lines it is told once that none is shown, so that a screen reader hears of the second.
    void shownChanged();

  private:
    struct Line {
        QString text;
        QString actionTitle;
        std::function<void()> action;
        const QObject* owner = nullptr;  // never looked into: only compared
        QString matter = {};
    };
    void forget(const QObject* owner);
    void add(Line line);
    void begin();
    void end();
    void endAfter(std::chrono::milliseconds duration);

    platform::Scheduler& scheduler_;
    std::deque<Line> lines_;  // the first one is shown
    bool held_ = false;
    platform::Scheduler::TimePoint begun_;
    platform::Scheduler::Timer timer_;
};

}  // namespace kestrix::ui
