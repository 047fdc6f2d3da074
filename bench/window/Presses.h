#pragma once

#include <QObject>
#include <QTimer>

#include <vector>

#include "bench/window/Figures.h"
#include "bench/window/KestrixSubject.h"

namespace kestrix::bench {

// Presses record with the mouse every now and then, while it lives.
class Presses : public QObject {
  public:
    explicit Presses(KestrixSubject& subject);

    // Milliseconds, one a press: from the press in the event queue until its row is in the list, and until it
    // is also in the database.
    const std::vector<double>& untilListed() const { return untilListed_; }
    const std::vector<double>& untilKept() const { return untilKept_; }

  private:
    void press();

    KestrixSubject& subject_;
    QTimer timer_;
    Clock::time_point posted_;
    std::vector<double> untilListed_;
    std::vector<double> untilKept_;
};

}  // namespace kestrix::bench
