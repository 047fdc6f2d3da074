#include "shell/NavigationContainer.h"

#include <utility>

namespace kestrix::shell {

NavigationContainer::NavigationContainer(std::unique_ptr<ui::Screen> root) : Screen(root->id()) {
    adopt(*root);
    screens_.push_back(std::move(root));
    connect(this, &Screen::coveredChanged, this, &NavigationContainer::updateCovered);
}

// Not the script engine's to destroy.
void NavigationContainer::adopt(ui::Screen& screen) {
    screen.setParent(this);
}

void NavigationContainer::pushViewController(std::unique_ptr<ui::Screen> screen, bool animated) {
    adopt(*screen);
    topViewController().viewWillDisappear();
    screens_.push_back(std::move(screen));
    topViewController().loadView();
    show(animated);
}

void NavigationContainer::popViewController(bool animated) {
    if (screens_.size() == 1) return;
    topViewController().viewWillDisappear();
    // It may take itself away from inside its own call.
    ui::Screen* const gone = screens_.back().release();
    gone->deleteLater();
    screens_.pop_back();
    show(animated);
}

void NavigationContainer::show(bool animated) {
    if (delegate_ != nullptr) delegate_->navigationControllerWillShow(topViewController(), animated);
    topViewController().viewWillAppear();
    updateCovered();
    topViewController().viewDidAppear();
    if (delegate_ != nullptr) delegate_->navigationControllerDidShow(count(), animated);
}

void NavigationContainer::updateCovered() {
    for (const auto& screen : screens_) screen->setCovered(isCovered() || screen != screens_.back());
}

}  // namespace kestrix::shell
