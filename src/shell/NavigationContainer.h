#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "ui/Screen.h"

namespace kestrix::shell {

// Hears which screen a navigation container shows.
class NavigationContainerDelegate {
  public:
    virtual ~NavigationContainerDelegate() = default;
    virtual void navigationControllerWillShow(ui::Screen& screen, bool animated) = 0;
    // screens: on the stack, the shown one included.
    virtual void navigationControllerDidShow(std::size_t screens, bool animated) = 0;
};

// Screens of which the last one is shown, without a bar of its own.
class NavigationContainer final : public kestrix::ui::Screen {
    Q_OBJECT

  public:
    explicit NavigationContainer(std::unique_ptr<ui::Screen> root);

    // Not owned; none: nobody hears.
    void setDelegate(NavigationContainerDelegate* delegate) { delegate_ = delegate; }

    void pushViewController(std::unique_ptr<ui::Screen> screen, bool animated);
    // Takes the shown one away; the root stays.
    void popViewController(bool animated);

    ui::Screen& rootViewController() const { return *screens_.front(); }
    ui::Screen& topViewController() const { return *screens_.back(); }
    std::size_t count() const { return screens_.size(); }

    void viewDidLoad() override { topViewController().loadView(); }
    void viewWillAppear() override { topViewController().viewWillAppear(); }
    void viewDidAppear() override { topViewController().viewDidAppear(); }
    void viewWillDisappear() override { topViewController().viewWillDisappear(); }

  private:
    void adopt(ui::Screen& screen);
    void show(bool animated);
    void updateCovered();

    std::vector<std::unique_ptr<ui::Screen>> screens_;
    NavigationContainerDelegate* delegate_ = nullptr;
};

}  // namespace kestrix::shell
