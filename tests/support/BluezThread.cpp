#include "tests/support/BluezThread.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kestrix::testing {

BluezThread::BluezThread() {
    EXPECT_TRUE(bus_.start());
    place_.moveToThread(&thread_);
    thread_.start();
    QMetaObject::invokeMethod(
        &place_,
        [this] {
            bluez_ = std::make_unique<FakeBluez>(bus_.address());
            bluez_->addAdapter();
        },
        Qt::BlockingQueuedConnection);
}

BluezThread::~BluezThread() {
    QMetaObject::invokeMethod(
        &place_, [this] { bluez_.reset(); }, Qt::BlockingQueuedConnection);
    thread_.quit();
    thread_.wait();
}

void BluezThread::with(const std::function<void(FakeBluez&)>& work) {
    QMetaObject::invokeMethod(
        &place_, [&] { work(*bluez_); }, Qt::BlockingQueuedConnection);
}

bool BluezThread::waitUntil(const std::function<bool(FakeBluez&)>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    bool holds = false;
    while (!holds && std::chrono::steady_clock::now() < end) {
        with([&](FakeBluez& bluez) { holds = condition(bluez); });
        QThread::yieldCurrentThread();
    }
    return holds;
}

}  // namespace kestrix::testing
