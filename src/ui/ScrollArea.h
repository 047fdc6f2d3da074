#pragma once

#include "ui/Control.h"
#include "ui/KeyTable.h"

namespace kestrix::ui {

// A part of a screen that is higher than what is seen of it at once. Fingers, wheel and scroll bar are the
// view's; what the keys do stands here. All lengths are points.
class ScrollArea : public kestrix::ui::Control {
    Q_OBJECT
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY contentHeightChanged FINAL)
    Q_PROPERTY(double position READ position NOTIFY scrollAsked FINAL)

  public:
    static constexpr double kStep = 40;  // of an arrow key, and what a page leaves of the one before

    ScrollArea(Screen& screen, const char* name);

    double contentHeight() const { return contentHeight_; }
    void setContentHeight(double height);

    // For the view: what is seen now, from `position` on.
    Q_INVOKABLE void setSeen(double position, double height);
    double position() const { return position_; }

    // As far as the content goes; as soon as there is a view.
    void scrollTo(double position);

    // A key went down, or repeats itself. True when it is one that scrolls, and is used up.
    Q_INVOKABLE bool pressKey(int key, int modifiers, bool repeated) const;

  Q_SIGNALS:
    void contentHeightChanged();
    void scrollAsked();

  protected:
    bool tell() override;

  private:
    double contentHeight_ = 0;
    double toldContentHeight_ = 0;
    double position_ = 0;
    double height_ = 0;  // of what is seen
    KeyTable keys_;
};

}  // namespace kestrix::ui
