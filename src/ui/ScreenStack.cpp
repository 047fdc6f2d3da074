#include "ui/ScreenStack.h"

#include <QLoggingCategory>

#include <algorithm>
#include <utility>

namespace kestrix::ui {
namespace {

Q_LOGGING_CATEGORY(lcScreens, "kestrix.screens", QtWarningMsg)

}  // namespace

void ScreenStack::registerScreen(ScreenId id, MakeScreen makeScreen, const QUrl& view) {
    registered_[id] = {std::move(makeScreen), view};
}

void ScreenStack::present(ScreenId id, bool animated) {
    const auto found = registered_.find(id);
    if (found == registered_.end()) {
        qCWarning(lcScreens, "no screen is registered for %s", nameOf(id));
        if (missing_) missing_(id);
        return;
    }
    Presented next{found->second.makeScreen(), found->second.view, animated && slideDuration() > 0, false};
    Screen& screen = *next.screen;
    screen.setParent(this);  // not the script engine's to destroy
    screen.loadView();
    screen.viewWillAppear();
    const bool slides = next.animated;
    beginInsertRows({}, count(), count());
    presented_.push_back(std::move(next));
    endInsertRows();
    Q_EMIT countChanged();
    if (!slides) screen.viewDidAppear();
}

void ScreenStack::dismiss(bool animated) {
    const auto top = std::find_if(presented_.rbegin(), presented_.rend(),
                                  [](const Presented& presented) { return !presented.leaving; });
    if (top == presented_.rend()) return;
    const auto row = static_cast<std::size_t>(presented_.rend() - top - 1);
    top->screen->viewWillDisappear();  // may present another
    if (!animated || slideDuration() == 0) return remove(row);
    presented_[row].leaving = true;
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed, {LeavingRole});
}

void ScreenStack::slidOut(Screen* screen) {
    const auto found =
        std::find_if(presented_.begin(), presented_.end(), [screen](const Presented& presented) {
            return presented.screen.get() == screen && presented.leaving;
        });
    if (found != presented_.end()) remove(static_cast<std::size_t>(found - presented_.begin()));
}

void ScreenStack::slidIn(Screen* screen) {
    const bool stays =
        std::any_of(presented_.begin(), presented_.end(), [screen](const Presented& presented) {
            return presented.screen.get() == screen && !presented.leaving;
        });
    if (stays) screen->viewDidAppear();
}

Screen* ScreenStack::topmost() const {
    const auto top = std::find_if(presented_.rbegin(), presented_.rend(),
                                  [](const Presented& presented) { return !presented.leaving; });
    return top == presented_.rend() ? nullptr : top->screen.get();
}

int ScreenStack::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ScreenStack::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Presented& presented = presented_.at(static_cast<std::size_t>(index.row()));
    switch (role) {
        case ScreenRole:
            return QVariant::fromValue(presented.screen.get());
        case ViewRole:
            return presented.view;
        case AnimatedRole:
            return presented.animated;
        case LeavingRole:
            return presented.leaving;
        default:
            return {};
    }
}

QHash<int, QByteArray> ScreenStack::roleNames() const {
    return {{ScreenRole, "screen"}, {ViewRole, "view"}, {AnimatedRole, "animated"}, {LeavingRole, "leaving"}};
}

void ScreenStack::remove(std::size_t row) {
    // The view lets go of the screen first. A screen may dismiss itself from inside its own call.
    beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
    Screen* const gone = presented_[row].screen.release();
    presented_.erase(presented_.begin() + static_cast<std::ptrdiff_t>(row));
    endRemoveRows();
    gone->deleteLater();
    Q_EMIT countChanged();
}

}  // namespace kestrix::ui
