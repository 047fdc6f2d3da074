#include "ui/DisplayUpdates.h"

#include <utility>

#include "ui/Control.h"

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
        told |= control->tell();
    }
    if (told && requestFrame_) frameOutstanding_ = requestFrame_();
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
