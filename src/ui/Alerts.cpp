#include "ui/Alerts.h"

#include <QPointer>

#include <algorithm>
#include <utility>
#include <vector>

#include "ui/KeyRules.h"

namespace kestrix::ui {

void Alerts::show(Alert alert, const QObject& owner) {
    if (alert.buttons.isEmpty()) alert.buttons << tr("OK");
    const auto ownerGone =
        connect(&owner, &QObject::destroyed, this, [this](const QObject* gone) { forget(gone); });
    alerts_.push_back({std::move(alert), &owner, ownerGone});
    if (alerts_.size() == 1) Q_EMIT shownChanged();
}

void Alerts::answer(int button) {
    if (button < 0 || button >= buttons().size()) return;
    const std::function<void(int)> answered = std::move(alerts_.front().alert.answered);
    disconnect(alerts_.front().ownerGone);
    alerts_.pop_front();
    // Between two alerts none is shown: the second is a new one to the keyboard and to screen readers.
    std::deque<Owned> rest = std::exchange(alerts_, {});
    std::vector<QPointer<const QObject>> owners;
    owners.reserve(rest.size());
    for (const Owned& owned : rest) owners.emplace_back(owned.owner);
    Q_EMIT shownChanged();
    for (std::size_t i = rest.size(); i-- > 0;) {
        if (owners[i]) alerts_.push_front(std::move(rest[i]));
    }
    if (!rest.empty()) Q_EMIT shownChanged();
    if (answered) answered(button);  // may show another, or destroy its owner
}

bool Alerts::pressKey(int key, int modifiers, bool repeated) {
    if (!repeated && KeyRules::leadsBack(key, modifiers)) cancel();
    return key != Qt::Key_Tab && key != Qt::Key_Backtab;
}

const Alert& Alerts::current() const {
    static const Alert kNone;
    return isShown() ? alerts_.front().alert : kNone;
}

void Alerts::forget(const QObject* owner) {
    const bool shownGoes = isShown() && alerts_.front().owner == owner;
    std::erase_if(alerts_, [owner](const Owned& owned) { return owned.owner == owner; });
    if (shownGoes) Q_EMIT shownChanged();
}

}  // namespace kestrix::ui
