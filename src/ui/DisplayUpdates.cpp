#include "ui/DisplayUpdates.h"

#include <QPointer>

#include <utility>

namespace kestrix::ui {

DisplayUpdates& DisplayUpdates::shared() {
    static DisplayUpdates updates;
    return updates;
}

void DisplayUpdates::pace(RequestFrame requestFrame) {
    requestFrame_ = std::move(requestFrame);
    frameDone();
}

void DisplayUpdates::frameDone() {
    frameOutstanding_ = false;
    schedule();
}

void DisplayUpdates::flush() {
    if (waiting_.empty()) return;
    // What a signal changes is told with the next round; what it destroys, not any more.
    telling_.insert(telling_.begin(), waiting_.rbegin(), waiting_.rend());
    waiting_.clear();
    bool told = false;
    while (!telling_.empty()) {
        Control* const control = telling_.back();
        telling_.pop_back();
        control->waiting_ = false;
        told |= tell(*control);
    }
    if (told && requestFrame_) frameOutstanding_ = requestFrame_();
}

bool DisplayUpdates::tell(Control& control) {
    if (!control.tell()) return false;
    // Only now: a signal may destroy the control, and `Control::tell` still works with it.
    std::vector<Control::Signal> signals;
    signals.swap(differing_);
    QPointer<Control> alive(&control);
    for (const Control::Signal signal : signals) {
        if (alive) (alive->*signal)();
    }
    if (differing_.empty()) {  // the room is used again
        signals.clear();
        signals.swap(differing_);
    }
    return true;
}

void DisplayUpdates::add(Control& control) {
    waiting_.push_back(&control);
    schedule();
}

void DisplayUpdates::remove(Control& control) {
    std::erase(waiting_, &control);
    std::erase(telling_, &control);
}

void DisplayUpdates::schedule() {
    if (scheduled_ || frameOutstanding_ || waiting_.empty()) return;
    scheduled_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            scheduled_ = false;
            if (!frameOutstanding_) flush();
        },
        Qt::QueuedConnection);
}

}  // namespace kestrix::ui
