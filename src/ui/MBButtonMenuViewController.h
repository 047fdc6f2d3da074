#pragma once

#include <QColor>
#include <QObject>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <chrono>
#include <cstdint>
#include <vector>

#include "ui/ScreenStack.h"

namespace kestrix::ui {

class MBButtonMenuViewController;

// Hears what was chosen. It hides the menu: the menu does not hide itself.
class MBButtonMenuViewControllerDelegate {
  public:
    virtual ~MBButtonMenuViewControllerDelegate() = default;
    virtual void buttonMenuViewController(MBButtonMenuViewController& menu,
                                          std::uint64_t buttonTappedAtIndex) = 0;
    virtual void buttonMenuViewControllerDidCancel(MBButtonMenuViewController& menu) = 0;
};

// One button of the menu, as it was rendered.
struct MenuButton {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title CONSTANT FINAL)
    Q_PROPERTY(QRectF frame MEMBER frame CONSTANT FINAL)
    Q_PROPERTY(QColor background MEMBER background CONSTANT FINAL)
    Q_PROPERTY(QColor titleColor MEMBER titleColor CONSTANT FINAL)
    Q_PROPERTY(bool current MEMBER current CONSTANT FINAL)

  public:
    QString title;
    QRectF frame;  // in points of the panel's content
    QColor background;
    QColor titleColor;
    bool current = true;  // of the last rendering; the others lie beneath it

    bool operator==(const MenuButton&) const = default;
};

// A panel of buttons, one above the other, that rises from the bottom third of a screen while the screen
// behind is dimmed and shrinks a little. Made once by its owner, and shown again and again.
class MBButtonMenuViewController : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool onScreen READ isOnScreen NOTIFY movementChanged FINAL)
    Q_PROPERTY(bool rising READ isRising NOTIFY movementChanged FINAL)
    Q_PROPERTY(int duration READ duration CONSTANT FINAL)
    Q_PROPERTY(QVariantList buttons READ buttonsForView NOTIFY rendered FINAL)
    Q_PROPERTY(QRectF panel READ panel NOTIFY rendered FINAL)
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY rendered FINAL)
    Q_PROPERTY(QString backgroundImage READ backgroundImage CONSTANT FINAL)

  public:
    static constexpr double kShrunkScale = 0.9;

    // duration: of rising and of sinking; 0: at once.
    explicit MBButtonMenuViewController(QStringList buttonTitles,
                                        std::chrono::milliseconds duration = ScreenStack::kSlideDuration);

    // The view tells when it has risen or sunk; where there is none, nobody else does.
    Q_INVOKABLE void movementDone();
    // Whether it has risen, and has not sunk since.
    bool isVisible() const { return visible_; }
    // Whether anything of it is to be seen.
    bool isOnScreen() const { return shrunkView_ != nullptr; }
    bool isRising() const { return rising_; }

    const QStringList& buttonTitles() const { return buttonTitles_; }
    void setButtonTitles(QStringList titles);
    // Of the button that cancels; -1: none.
    std::int64_t cancelButtonIndex() const { return cancelButtonIndex_; }
    // Less than -1, and more than the last button's, is refused; so is -1 while there are titles.
    void setCancelButtonIndex(std::int64_t index);

    // The delegate is not owned. None: what is tapped is lost.
    void setDelegate(MBButtonMenuViewControllerDelegate* delegate) { delegate_ = delegate; }

    // v: the screen that is shrunk and that the menu covers; not owned, it outlives the menu's being shown.
    void showInView(Screen& v);
    void hide();

    // Adds a button for each title. Those of an earlier rendering stay in place beneath them.
    void renderButtons();
    // In points.
    double buttonHeight() const;
    double buttonWidth() const { return panel_.width(); }
    double verticalSpacingBetweenButtons() const;
    MenuButton buttonWithTitle(const QString& title, std::size_t index) const;
    // By its title: of several with the same one the first is told.
    Q_INVOKABLE void buttonTapped(const QString& title);
    // A key went down, or repeats itself, that none of its buttons used. Those that lead back press the
    // cancel button. True when it is used up: nothing behind hears a key, but Tab goes on to the buttons.
    Q_INVOKABLE bool pressKey(int key, int modifiers, bool repeated);

    const std::vector<MenuButton>& renderedButtons() const { return rendered_; }
    // Its place in the screen, in points: empty before it was shown for the first time.
    QRectF panel() const { return panel_; }
    // Of all buttons of the last rendering.
    double contentHeight() const { return contentHeight_; }
    QString backgroundImage() const { return backgroundColor; }

    bool shrinksParentView = false;  // kept for its owner: the screen always shrinks
    QString backgroundColor = QStringLiteral("background.PNG");  // what the panel is filled with, a picture
    double minimumButtonHeight = 24;
    double maximumButtonWidth = 320;  // kept for its owner

  Q_SIGNALS:
    void movementChanged();
    void rendered();

  private:
    int duration() const { return static_cast<int>(duration_.count()); }
    QVariantList buttonsForView() const;
    void move(bool rising);

    QStringList buttonTitles_;
    std::chrono::milliseconds duration_;
    std::int64_t cancelButtonIndex_ = -1;
    MBButtonMenuViewControllerDelegate* delegate_ = nullptr;
    Screen* shrunkView_ = nullptr;
    bool loaded_ = false;
    bool rising_ = false;
    bool visible_ = false;
    QRectF panel_;
    double contentHeight_ = 0;
    std::vector<MenuButton> rendered_;
};

}  // namespace kestrix::ui
