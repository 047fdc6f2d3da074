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
    Presented next{found->second.makeScreen(), found->second.view, animated && slideDuration() > 0};
    Screen& screen = *next.screen;
    screen.setParent(this);  // not the script engine's to destroy
    screen.loadView();
    screen.viewWillAppear();
    const bool slides = next.animated;
    beginInsertRows({}, count(), count());
    presented_.push_back(std::move(next));
    endInsertRows();
    Q_EMIT countChanged();
    if (!slides) settle(screen);
}

void ScreenStack::setRoot(Screen* root) {
    root_ = root;
    updateCovered();
}

void ScreenStack::dismiss(bool animated) {
    const auto top = std::find_if(presented_.rbegin(), presented_.rend(),
                                  [](const Presented& presented) { return !presented.leaving; });
    if (top == presented_.rend()) return;
    Screen& screen = *top->screen;
    top->leaving = true;
    top->inPlace = false;
    screen.viewWillDisappear();  // may present another, or dismiss one more
    const auto row = rowOf(screen);
    if (!animated || slideDuration() == 0) return remove(row);
    updateCovered();
    const QModelIndex changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed, {LeavingRole});
}

std::size_t ScreenStack::rowOf(const Screen& screen) const {
    const auto found =
        std::find_if(presented_.begin(), presented_.end(),
                     [&screen](const Presented& presented) { return presented.screen.get() == &screen; });
    return static_cast<std::size_t>(found - presented_.begin());
}

void ScreenStack::slidOut(Screen* screen) {
    const auto found =
        std::find_if(presented_.begin(), presented_.end(), [screen](const Presented& presented) {
            return presented.screen.get() == screen && presented.leaving;
        });
    if (found != presented_.end()) remove(static_cast<std::size_t>(found - presented_.begin()));
}

void ScreenStack::slidIn(Screen* screen) {
    if (screen != nullptr) settle(*screen);
}

void ScreenStack::settle(Screen& screen) {
    if (!stays(screen)) return;
    presented_[rowOf(screen)].inPlace = true;
    updateCovered();  // whoever hears of it may dismiss the screen
    if (stays(screen)) screen.viewDidAppear();
}

bool ScreenStack::stays(const Screen& screen) const {
    const std::size_t row = rowOf(screen);
    return row < presented_.size() && !presented_[row].leaving;
}

void ScreenStack::updateCovered() {
    // What is told may change the stack: the screens are found first.
    std::vector<std::pair<QPointer<Screen>, bool>> told;
    bool covered = false;
    for (auto row = presented_.rbegin(); row != presented_.rend(); ++row) {
        told.emplace_back(row->screen.get(), covered);
        covered = covered || row->inPlace;
    }
    told.emplace_back(root_, covered);
    for (const auto& [screen, isCovered] : told) {
        if (screen) screen->setCovered(isCovered);
    }
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
    updateCovered();
    Q_EMIT countChanged();
}

}  // namespace kestrix::ui
