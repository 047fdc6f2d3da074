#pragma once

#include <QAnimationDriver>
#include <QCoreApplication>

#include <algorithm>

namespace kestrix::testing {

// While it lives, animations go on only when the test says so.
class StepDriver final : public QAnimationDriver {
  public:
    StepDriver() { install(); }
    ~StepDriver() override { uninstall(); }

    void start() override {
        elapsed_ = 0;
        QAnimationDriver::start();
    }
    qint64 elapsed() const override { return elapsed_; }
    void advance() override {}  // the clock's wake-ups mean nothing

    // In steps of a frame's length.
    void step(qint64 milliseconds) {
        constexpr qint64 kFrame = 16;
        while (milliseconds > 0) {
            const qint64 slice = std::min(milliseconds, kFrame);
            elapsed_ += slice;
            milliseconds -= slice;
            advanceAnimation();
            QCoreApplication::processEvents();
        }
    }

  private:
    qint64 elapsed_ = 0;  // since the first of the running animations began
};

}  // namespace kestrix::testing
