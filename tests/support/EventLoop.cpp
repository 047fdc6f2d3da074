#include "tests/support/EventLoop.h"

#include <QCoreApplication>
#include <QTimer>

namespace kestrix::testing {

bool spinUntil(const std::function<bool()>& condition) {
    bool hangs = false;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &limit, [&] { hangs = true; });
    limit.start(30'000);
    while (!hangs && !condition())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return condition();
}

}  // namespace kestrix::testing
