#include "ui/Notice.h"

#include <algorithm>
#include <utility>

namespace kestrix::ui {

using std::chrono::milliseconds;

void Notice::show(const QString& text) {
    add({text, {}, nullptr, nullptr});
}

void Notice::show(const QString& text, const QString& matter) {
    if (matter.isEmpty()) return show(text);
    const auto before = std::find_if(lines_.begin(), lines_.end(),
                                     [&matter](const Line& line) { return line.matter == matter; });
    if (before == lines_.end()) return add({text, {}, nullptr, nullptr, matter});
    *before = {text, {}, nullptr, nullptr, matter};
    if (before == lines_.begin()) begin();
}

void Notice::show(const QString& text, const QString& actionTitle, std::function<void()> action,
                  const QObject& owner) {
    disconnect(&owner, nullptr, this, nullptr);
    connect(&owner, &QObject::destroyed, this, [this](const QObject* gone) { forget(gone); });
    add({text, actionTitle, std::move(action), &owner});
}

void Notice::forget(const QObject* owner) {
    for (Line& line : lines_) {
        if (line.owner == owner) line = {line.text, {}, nullptr, nullptr};
    }
    if (isShown()) Q_EMIT shownChanged();
}

void Notice::add(Line line) {
    if (!lines_.empty() && lines_.back().text == line.text) {
        lines_.back() = std::move(line);  // the newer action is the one that still makes sense
        if (lines_.size() == 1) begin();
        return;
    }
    lines_.push_back(std::move(line));
    if (lines_.size() == 1) return begin();
    if (lines_.size() > kMostWaiting + 1) lines_.erase(lines_.begin() + 1);
    if (held_) return;
    const auto shownFor = std::chrono::duration_cast<milliseconds>(scheduler_.now() - begun_);
    endAfter(std::max(kLeastDuration - shownFor, milliseconds(0)));
}

void Notice::begin() {
    if (held_) return;
    begun_ = scheduler_.now();
    endAfter(lines_.size() > 1 ? kLeastDuration : kDuration);
    Q_EMIT shownChanged();
}

void Notice::end() {
    std::deque<Line> rest = std::exchange(lines_, {});
    if (!rest.empty()) rest.pop_front();
    timer_.cancel();
    Q_EMIT shownChanged();
    // Whoever hears that nothing is shown may have shown something.
    lines_.insert(lines_.begin(), std::make_move_iterator(rest.begin()), std::make_move_iterator(rest.end()));
    if (!rest.empty()) begin();
}

void Notice::setHeld(bool held) {
    if (held == held_) return;
    held_ = held;
    if (lines_.empty()) return;
    timer_.cancel();
    if (held) {
        Q_EMIT shownChanged();
    } else {
        begin();
    }
}

void Notice::pressAction() {
    if (!isShown() || !lines_.front().action) return;
    const std::function<void()> action = lines_.front().action;
    end();
    action();  // may show another line
}

void Notice::clear() {
    lines_.clear();
    timer_.cancel();
    Q_EMIT shownChanged();
}

void Notice::endAfter(milliseconds duration) {
    timer_ = scheduler_.callAfter(duration, [this] { end(); });
}

}  // namespace kestrix::ui
