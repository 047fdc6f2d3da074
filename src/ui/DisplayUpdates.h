#pragma once

#include <QObject>

#include <functional>
#include <vector>

#include "ui/Control.h"

namespace kestrix::ui {

// Controls keep their state at once; the display is told once per frame of it, and only what differs from
// what it was told before. So a flood of records costs what the display shows of it. Main thread only.
class DisplayUpdates : public QObject {
  public:
    // Asks for a frame of the display; false when none will come (nothing is on screen).
    using RequestFrame = std::function<bool()>;

    static DisplayUpdates& shared();

    // From now on one round of telling waits for the frame of the one before (`frameDone`). None: every turn
    // of the event loop tells.
    void pace(RequestFrame requestFrame);
    // The frame was shown, or will not be.
    void frameDone();

    // Tells now.
    void flush();
    bool idle() const { return waiting_.empty(); }

  private:
    friend class Control;
    void add(Control& control);
    void remove(Control& control);
    void schedule();
    // Emits the signals of what differs. False when nothing does. The control may not be there afterwards.
    bool tell(Control& control);

    std::vector<Control*> waiting_;           // not owned; a control removes itself
    std::vector<Control*> telling_;           // the rest of the round that is being told, the next one last
    std::vector<Control::Signal> differing_;  // of the control that notes them
    RequestFrame requestFrame_;
    bool scheduled_ = false;
    bool frameOutstanding_ = false;
};

}  // namespace kestrix::ui
