#include "ui/MBButtonMenuViewController.h"

#include <algorithm>
#include <utility>

#include "ui/KeyRules.h"
#include "ui/Palette.h"
#include "ui/StageMetrics.h"

namespace kestrix::ui {

MBButtonMenuViewController::MBButtonMenuViewController(QStringList buttonTitles,
                                                       std::chrono::milliseconds duration)
    : buttonTitles_(std::move(buttonTitles)), duration_(duration) {}

void MBButtonMenuViewController::setButtonTitles(QStringList titles) {
    buttonTitles_ = std::move(titles);
    renderButtons();
}

void MBButtonMenuViewController::setCancelButtonIndex(std::int64_t index) {
    if (index < -1) return;
    // As unsigned numbers: -1 is beyond every last one, and without titles nothing is.
    const auto last = static_cast<std::uint64_t>(buttonTitles_.size()) - 1;
    if (static_cast<std::uint64_t>(index) > last) return;
    cancelButtonIndex_ = index;
    renderButtons();
}

double MBButtonMenuViewController::buttonHeight() const {
    if (buttonTitles_.isEmpty()) return minimumButtonHeight;
    return std::max(panel_.height() / static_cast<double>(buttonTitles_.size()), minimumButtonHeight);
}

double MBButtonMenuViewController::verticalSpacingBetweenButtons() const {
    const auto number = static_cast<double>(buttonTitles_.size());
    const double needed = number * buttonHeight();
    if (number == 0 || needed > contentHeight_) return 0;
    return (contentHeight_ - needed) / number * 0.5;
}

MenuButton MBButtonMenuViewController::buttonWithTitle(const QString& title, std::size_t index) const {
    const bool cancels = static_cast<std::int64_t>(index) == cancelButtonIndex_;
    const double y = static_cast<double>(index) * buttonHeight() + verticalSpacingBetweenButtons();
    return {.title = title,
            .frame = {0, y, buttonWidth(), buttonHeight()},
            .background = cancels ? Palette::menuCancel : Palette::menuButton,
            .titleColor = cancels ? Palette::menuCancelTitle : Palette::textOnDark};
}

void MBButtonMenuViewController::renderButtons() {
    contentHeight_ = static_cast<double>(buttonTitles_.size()) * buttonHeight();
    for (MenuButton& earlier : rendered_) earlier.current = false;
    std::size_t index = 0;
    for (const QString& title : std::as_const(buttonTitles_))
        rendered_.push_back(buttonWithTitle(title, index++));
    Q_EMIT rendered();
}

void MBButtonMenuViewController::buttonTapped(const QString& title) {
    const qsizetype index = buttonTitles_.indexOf(title);
    if (delegate_ == nullptr) return;
    if (index != cancelButtonIndex_)
        delegate_->buttonMenuViewController(*this, static_cast<std::uint64_t>(index));
    else
        delegate_->buttonMenuViewControllerDidCancel(*this);
}

bool MBButtonMenuViewController::pressKey(int key, int modifiers, bool repeated) {
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab) return false;
    const bool cancels = KeyRules::leadsBack(key, modifiers) && cancelButtonIndex_ >= 0;
    if (cancels && !repeated && visible_) buttonTapped(buttonTitles_.value(cancelButtonIndex_));
    return true;
}

void MBButtonMenuViewController::showInView(Screen& v) {
    shrunkView_ = &v;
    if (!loaded_) {
        loaded_ = true;
        const double height = StageMetrics::shared().height();
        panel_ = {0, height - height / 3, StageMetrics::kWidth, height / 3};
        renderButtons();
    }
    move(true);
}

void MBButtonMenuViewController::hide() {
    if (isOnScreen()) move(false);
}

void MBButtonMenuViewController::move(bool rising) {
    rising_ = rising;
    Q_EMIT movementChanged();
    if (duration_.count() == 0) movementDone();
}

void MBButtonMenuViewController::movementDone() {
    visible_ = rising_;
    if (!rising_) shrunkView_ = nullptr;
    Q_EMIT movementChanged();
}

QVariantList MBButtonMenuViewController::buttonsForView() const {
    QVariantList buttons;
    for (const MenuButton& button : rendered_) buttons << QVariant::fromValue(button);
    return buttons;
}

}  // namespace kestrix::ui
