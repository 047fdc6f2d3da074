#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "live/MainViewController.h"
#include "platform/NotificationCenter.h"
#include "shell/LeftSideBarViewController.h"
#include "shell/NavigationContainer.h"
#include "storage/RightSideBarViewController.h"
#include "ui/Services.h"
#include "ui/SideBarContainer.h"

namespace kestrix::shell {

// The frame of the application: the content area with the live screen, and beneath it the side bars, the menu
// on the left and the list of test records on the right. The content slides aside to uncover one of them, and
// back on a tap. It also presents the information screens that are asked for by notification.
class SidebarViewController final : public kestrix::ui::Screen,
                                    public ui::SideBarContainer,
                                    public NavigationContainerDelegate,
                                    public LeftSideBarDelegate {
    Q_OBJECT
    Q_PROPERTY(kestrix::live::MainViewController* mainView READ mainView NOTIFY contentChanged FINAL)
    Q_PROPERTY(kestrix::shell::LeftSideBarViewController* leftSideBar READ leftSideBar CONSTANT FINAL)
    Q_PROPERTY(kestrix::ui::Screen* rightSideBar READ rightSideBar CONSTANT FINAL)
    Q_PROPERTY(double target READ target NOTIFY slideBegan FINAL)
    Q_PROPERTY(int slideDuration READ slideDuration NOTIFY slideBegan FINAL)
    Q_PROPERTY(bool userInteraction READ isUserInteractionEnabled NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool sideBarShowing READ sideBarShowing NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool tapCloses READ hasTapGestureRecognizer NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool rightInFront READ isRightInFront NOTIFY stateChanged FINAL)

  public:
    static constexpr double kSlideDistance = 270;  // points

    explicit SidebarViewController(const ui::Services& services);
    ~SidebarViewController() override;

    // The process-wide container; none until one has loaded.
    static SidebarViewController* share();

    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;

    // 0 closes, 1 uncovers the left side bar, any other brings the right one to the front; only 2 uncovers
    // it.
    void showSideBarControllerWithDirection(std::int32_t direction) override;
    // The slide alone. The view that follows `slideBegan` tells its end; where nothing has to move, or takes
    // no time, it ends at once.
    void moveAnimationWithDirection(std::int32_t direction, std::chrono::milliseconds duration);
    // The view has slid to `target`.
    Q_INVOKABLE void slid();

    // Puts a screen into the content area and closes the side bars; none: only closes. Not owned: it belongs
    // to whoever made it.
    void leftSideBarSelectWithController(ui::Screen* screen) override;
    void rightSideBarSelectWithController(ui::Screen*) {}

    void contentViewAddTapGestures();
    Q_INVOKABLE void tapOnContentView();
    void panInContentView() {}
    void removepanGestureReconginzerWhileNavConPushed(bool pushed);
    void navigationControllerWillShow(ui::Screen&, bool) override {}
    void navigationControllerDidShow(std::size_t screens, bool animated) override;

    // Present the information screens.
    void pressHelp();
    void pressMAVC();
    void pressAVC();

    // The keys that lead back close an open side bar.
    bool pressKey(int key, int modifiers, bool repeated) override;

    LeftSideBarViewController& leftSideBarViewController() { return *left_; }
    storage::RightSideBarViewController& rightSideBarViewController() { return *right_; }
    // What stands in the content area; none before the left side bar has loaded.
    ui::Screen* currentMainController() const { return current_; }
    // The live screen; none while another screen stands in the content area.
    live::MainViewController* mainView() const;

    bool sideBarShowing() const { return sideBarShowing_; }
    // Displacement of the content area after the last slide, in points: to the right of its place.
    double currentTranslate() const { return currentTranslate_; }
    // The same of the slide that runs.
    double target() const { return target_; }
    bool isUserInteractionEnabled() const { return userInteraction_; }
    bool hasTapGestureRecognizer() const { return tapGestureRecognizer_; }
    bool hasPanGestureReconginzer() const { return panGestureReconginzer_; }
    bool isRightInFront() const { return rightInFront_; }

  Q_SIGNALS:
    void contentChanged();
    void slideBegan();
    void stateChanged();

  private:
    int slideDuration() const { return static_cast<int>(slideDuration_.count()); }
    LeftSideBarViewController* leftSideBar() const { return left_.get(); }
    ui::Screen* rightSideBar() const { return right_.get(); }
    bool isSliding() const { return slideDuration_.count() > 0; }
    void updateCovered();
    void presentWhenAsked(std::string_view name, void (SidebarViewController::*press)());

    ui::Services services_;
    std::unique_ptr<LeftSideBarViewController> left_;
    std::unique_ptr<storage::RightSideBarViewController> right_;
    ui::Screen* current_ = nullptr;
    bool sideBarShowing_ = false;
    bool userInteraction_ = true;
    bool tapGestureRecognizer_ = false;
    bool panGestureReconginzer_ = false;
    bool rightInFront_ = false;
    std::chrono::milliseconds slideDuration_{0};  // of the slide that runs; 0: none does
    std::int32_t direction_ = kClosed;            // of the slide that runs, or of the last one
    double target_ = 0;
    double currentTranslate_ = 0;
    std::vector<platform::NotificationCenter::Subscription> subscriptions_;
};

}  // namespace kestrix::shell
