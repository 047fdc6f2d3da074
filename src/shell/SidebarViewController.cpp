#include "shell/SidebarViewController.h"

#include <utility>

#include "ui/KeyRules.h"
#include "ui/ScreenNotifications.h"

namespace kestrix::shell {
namespace {

using platform::NotificationCenter;

SidebarViewController* sharedContainer = nullptr;

}  // namespace

SidebarViewController::SidebarViewController(const ui::Services& services)
    : Screen(ui::ScreenId::SideBars), services_(services) {
    connect(this, &Screen::coveredChanged, this, &SidebarViewController::updateCovered);
    connect(this, &SidebarViewController::stateChanged, this, &SidebarViewController::updateCovered);
}

SidebarViewController::~SidebarViewController() {
    if (sharedContainer == this) sharedContainer = nullptr;
}

SidebarViewController* SidebarViewController::share() {
    return sharedContainer;
}

void SidebarViewController::viewDidLoad() {
    becomeShared();
    sharedContainer = this;
    presentWhenAsked(ui::NSHelp, &SidebarViewController::pressHelp);
    presentWhenAsked(ui::NSMoreApp, &SidebarViewController::pressMAVC);
    presentWhenAsked(ui::NSAbout, &SidebarViewController::pressAVC);
    left_ = std::make_unique<LeftSideBarViewController>(ui::ScreenId::Menu, services_);
    left_->setParent(this);  // not the script engine's to destroy
    left_->setDelegate(this);
    right_ = std::make_unique<storage::RightSideBarViewController>(ui::ScreenId::RecordList, services_);
    right_->setParent(this);
    left_->loadView();  // makes the live screen, and hands it over
    right_->loadView();
    rightInFront_ = true;
    removepanGestureReconginzerWhileNavConPushed(false);
    updateCovered();
}

void SidebarViewController::viewWillAppear() {
    if (current_ != nullptr) current_->viewWillAppear();
}

void SidebarViewController::viewDidAppear() {
    if (current_ != nullptr) current_->viewDidAppear();
}

void SidebarViewController::presentWhenAsked(std::string_view name, void (SidebarViewController::*press)()) {
    subscriptions_.push_back(NotificationCenter::defaultCenter().addObserver(
        name, [this, press](const platform::Notification&) { (this->*press)(); }));
}

void SidebarViewController::pressHelp() {
    services_.navigation.present(ui::ScreenId::Help, true);
}

void SidebarViewController::pressMAVC() {
    services_.navigation.present(ui::ScreenId::MoreApps, true);
}

void SidebarViewController::pressAVC() {
    services_.navigation.present(ui::ScreenId::About, true);
}

void SidebarViewController::showSideBarControllerWithDirection(std::int32_t direction) {
    if (direction != kClosed) rightInFront_ = direction != kLeft;
    moveAnimationWithDirection(direction, services_.slideDuration);
}

void SidebarViewController::moveAnimationWithDirection(std::int32_t direction,
                                                       std::chrono::milliseconds duration) {
    sideBarDirection = direction;
    NotificationCenter::defaultCenter().post({ui::NSHomeBackBg});
    userInteraction_ = false;
    direction_ = direction;
    if (direction == kClosed) target_ = 0;
    if (direction == kLeft) target_ = kSlideDistance;
    if (direction == kRight) target_ = -kSlideDistance;
    const bool moves = isSliding() || target_ != currentTranslate_;
    slideDuration_ = moves ? duration : std::chrono::milliseconds(0);
    Q_EMIT stateChanged();
    Q_EMIT slideBegan();
    if (!isSliding()) slid();
}

void SidebarViewController::slid() {
    slideDuration_ = std::chrono::milliseconds(0);
    userInteraction_ = true;
    sideBarShowing_ = direction_ != kClosed;
    tapGestureRecognizer_ = false;
    if (sideBarShowing_) contentViewAddTapGestures();
    currentTranslate_ = target_;
    Q_EMIT stateChanged();
}

void SidebarViewController::leftSideBarSelectWithController(ui::Screen* screen) {
    if (auto* navigation = qobject_cast<NavigationContainer*>(screen)) navigation->setDelegate(this);
    if (screen != nullptr && screen != current_) {
        if (current_ != nullptr) {
            current_->viewWillDisappear();
            current_->setCovered(true);
        }
        const bool replaces = current_ != nullptr;
        current_ = screen;
        screen->loadView();
        if (replaces) {
            screen->viewWillAppear();
            updateCovered();
            screen->viewDidAppear();
        }
        Q_EMIT contentChanged();
    }
    showSideBarControllerWithDirection(kClosed);
}

void SidebarViewController::contentViewAddTapGestures() {
    tapGestureRecognizer_ = true;
}

void SidebarViewController::tapOnContentView() {
    if (tapGestureRecognizer_ && userInteraction_)
        moveAnimationWithDirection(kClosed, services_.slideDuration);
}

void SidebarViewController::removepanGestureReconginzerWhileNavConPushed(bool pushed) {
    panGestureReconginzer_ = !pushed;
}

void SidebarViewController::navigationControllerDidShow(std::size_t screens, bool) {
    removepanGestureReconginzerWhileNavConPushed(screens > 1);
}

bool SidebarViewController::pressKey(int key, int modifiers, bool repeated) {
    if (!ui::KeyRules::leadsBack(key, modifiers) || !sideBarShowing_)
        return Screen::pressKey(key, modifiers, repeated);
    if (!repeated) tapOnContentView();
    return true;
}

live::MainViewController* SidebarViewController::mainView() const {
    auto* const navigation = qobject_cast<NavigationContainer*>(current_);
    return qobject_cast<live::MainViewController*>(navigation != nullptr ? &navigation->topViewController()
                                                                         : current_);
}

// A side bar that is covered by the content is not seen; the content always is, if only its edge.
void SidebarViewController::updateCovered() {
    const bool uncovered = isSliding() || currentTranslate_ != 0;
    if (left_) left_->setCovered(isCovered() || !uncovered || rightInFront_);
    if (right_) right_->setCovered(isCovered() || !uncovered || !rightInFront_);
    if (current_ != nullptr) current_->setCovered(isCovered());
}

}  // namespace kestrix::shell
