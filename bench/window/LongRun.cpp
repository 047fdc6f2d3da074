#include "bench/window/LongRun.h"

#include <QEventLoop>

#include <cstdio>

#include "bench/window/Application.h"
#include "bench/window/Figures.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix::bench {
namespace {

constexpr long kMostGrowthKib = 1024;
constexpr platform::Scheduler::Duration kAnimationPicture{167};

}  // namespace

int longRun(int pictures) {
    testing::ManualScheduler time;
    Application application({"simulator:house"}, &time);
    QEventLoop loop;
    QObject::connect(&application.window(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    const auto draw = [&](int count) {
        while (count-- > 0) {
            time.advance(kAnimationPicture);
            application.window().update();
            loop.exec();
        }
    };
    draw(pictures / 5);
    const long memoryBefore = memoryKib();
    const double costBefore = processorSeconds();
    const int rest = pictures - pictures / 5;
    draw(rest);
    const double cost = (processorSeconds() - costBefore) / rest;
    const long memoryAfter = memoryKib();
    std::printf("%.2f ms a picture; memory %ld KiB after %d pictures, %ld KiB after %d\n", cost * 1000,
                memoryBefore, pictures / 5, memoryAfter, pictures);
    return memoryAfter - memoryBefore <= kMostGrowthKib ? 0 : 1;
}

}  // namespace kestrix::bench
