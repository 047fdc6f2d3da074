#pragma once

#include <QCoreApplication>

#include "ui/DisplayUpdates.h"
#include "ui/Screen.h"

namespace kestrix::ui {

// One control of each kind.
struct TestScreen final : Screen {
    TestScreen() : Screen(ScreenId::MainView) {}

    Label text{*this, "text"};
    ImageView picture{*this, "picture"};
    Button help{*this, "help", Button::Event::TouchUpInside};
};

// How often a signal came.
class SignalCount {
  public:
    template <class Sender, class Signal>
    SignalCount(Sender& sender, Signal signal) {
        QObject::connect(&sender, signal, &context_, [this] { ++count_; });
    }
    int operator()() const { return count_; }

  private:
    QObject context_;
    int count_ = 0;
};

// Tells the display what differs now.
inline void tellDisplay() {
    DisplayUpdates::shared().flush();
}

}  // namespace kestrix::ui
