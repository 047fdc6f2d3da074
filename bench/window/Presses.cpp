#include "bench/window/Presses.h"

#include <QtTest/QTest>

namespace kestrix::bench {
namespace {

// Not in step with the animation or the pushes.
constexpr std::chrono::milliseconds kPeriod{503};

}  // namespace

Presses::Presses(KestrixSubject& subject) : subject_(subject) {
    connect(&timer_, &QTimer::timeout, this, &Presses::press);
    connect(subject.screen().dataList(), &live::SessionList::countChanged, this,
            [this] { untilListed_.push_back(milliseconds(Clock::now() - posted_)); });
    timer_.start(kPeriod);
}

// Queued like an event of the window system, behind whatever waits.
void Presses::press() {
    posted_ = Clock::now();
    const auto click = [this] {
        // Called when the press is done: while the mouse is let go.
        const auto done = [this] { untilKept_.push_back(milliseconds(Clock::now() - posted_)); };
        QMetaObject::invokeMethod(this, done, Qt::QueuedConnection);
        const QPoint place = subject_.recordButton();
        QTest::mousePress(&subject_.window(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseRelease(&subject_.window(), Qt::LeftButton, Qt::NoModifier, place);
    };
    QMetaObject::invokeMethod(this, click, Qt::QueuedConnection);
}

}  // namespace kestrix::bench
