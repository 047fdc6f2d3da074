#include "platform/Scheduler.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/EventLoop.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;

TEST(QtScheduler, CallsFromTheEventLoopAndNotBefore) {
    QtScheduler scheduler;
    int calls = 0;
    const Scheduler::Timer timer = scheduler.callAfter(milliseconds(0), [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(testing::spinUntil([&] { return calls == 1; }));
}

TEST(QtScheduler, AnEarlierCallComesFirst) {
    QtScheduler scheduler;
    std::string order;
    const Scheduler::Timer late = scheduler.callAfter(milliseconds(5), [&] { order += "late "; });
    const Scheduler::Timer soon = scheduler.callAfter(milliseconds(1), [&] { order += "soon "; });
    EXPECT_TRUE(testing::spinUntil([&] { return order.size() == 10; }));
    EXPECT_EQ(order, "soon late ");
}

TEST(QtScheduler, ACallIsNotMadeBeforeItsTime) {
    QtScheduler scheduler;
    const auto start = scheduler.now();
    bool called = false;
    const Scheduler::Timer timer = scheduler.callAfter(milliseconds(3), [&] { called = true; });
    EXPECT_TRUE(testing::spinUntil([&] { return called; }));
    EXPECT_GE(scheduler.now() - start, milliseconds(3));
}

TEST(QtScheduler, ADestroyedTimerDoesNotCall) {
    QtScheduler scheduler;
    int calls = 0;
    bool later = false;
    {
        const Scheduler::Timer timer = scheduler.callAfter(milliseconds(0), [&] { ++calls; });
    }
    const Scheduler::Timer end = scheduler.callAfter(milliseconds(1), [&] { later = true; });
    EXPECT_TRUE(testing::spinUntil([&] { return later; }));
    EXPECT_EQ(calls, 0);
}

TEST(QtScheduler, ACallMayReplaceItsOwnTimer) {
    QtScheduler scheduler;
    int calls = 0;
    Scheduler::Timer timer;
    const std::function<void()> again = [&] {
        if (++calls < 3) timer = scheduler.callAfter(milliseconds(0), again);
    };
    timer = scheduler.callAfter(milliseconds(0), again);
    EXPECT_TRUE(testing::spinUntil([&] { return calls == 3; }));
}

TEST(ManualScheduler, MovesCallByCallInOrderOfTime) {
    testing::ManualScheduler scheduler;
    const auto start = scheduler.now();
    std::vector<milliseconds> at;
    const auto note = [&] {
        at.push_back(std::chrono::duration_cast<milliseconds>(scheduler.now() - start));
    };
    const Scheduler::Timer b = scheduler.callAfter(milliseconds(20), note);
    const Scheduler::Timer a = scheduler.callAfter(milliseconds(10), note);
    { const Scheduler::Timer cancelled = scheduler.callAfter(milliseconds(5), note); }
    scheduler.advance(milliseconds(19));
    EXPECT_EQ(at, std::vector<milliseconds>{milliseconds(10)});
    scheduler.advance(milliseconds(1));
    EXPECT_EQ(at.size(), 2U);
}

// Qt's own timers end at 24.8 days.
TEST(QtScheduler, AWaitOfAMonthIsNotOverAtOnce) {
    QtScheduler scheduler;
    bool month = false;
    bool soon = false;
    const auto far = scheduler.callAfter(std::chrono::hours(24 * 30), [&] { month = true; });
    const auto near = scheduler.callAfter(std::chrono::milliseconds(1), [&] { soon = true; });
    ASSERT_TRUE(testing::spinUntil([&] { return soon; }));
    EXPECT_FALSE(month);
}

TEST(QtScheduler, ALongWaitIsMadeOfLegsAndIsNoShorter) {
    QtScheduler scheduler(std::chrono::milliseconds(1));
    const auto start = scheduler.now();
    bool over = false;
    const auto timer = scheduler.callAfter(std::chrono::milliseconds(5), [&] { over = true; });
    ASSERT_TRUE(testing::spinUntil([&] { return over; }));
    EXPECT_GE(scheduler.now() - start,
              std::chrono::milliseconds(4));  // precise timers may be a millisecond early
}

// Qt's timers stand still meanwhile.
TEST(QtScheduler, WhatBecameDueWhileTheComputerSleptIsCalledWhenItWakes) {
    Scheduler::Duration slept{0};
    QtScheduler scheduler(QtScheduler::kLongestLeg, [&] { return QtScheduler::timeSinceStart() + slept; });
    std::string order;
    const auto hour = scheduler.callAfter(std::chrono::hours(1), [&] { order += "hour "; });
    const auto day = scheduler.callAfter(std::chrono::hours(24), [&] { order += "day "; });
    slept = std::chrono::hours(8);
    scheduler.wakeUp();
    EXPECT_EQ(order, "") << "not from the event loop";
    EXPECT_TRUE(testing::spinUntil([&] { return !order.empty(); }));
    EXPECT_EQ(order, "hour ");
}

TEST(QtScheduler, ItsClockGoesOnInSleep) {
    QtScheduler scheduler;
    timespec before{};
    timespec after{};
    clock_gettime(CLOCK_BOOTTIME, &before);
    const auto now = scheduler.now().time_since_epoch();
    clock_gettime(CLOCK_BOOTTIME, &after);
    EXPECT_GE(now, std::chrono::seconds(before.tv_sec) + std::chrono::nanoseconds(before.tv_nsec));
    EXPECT_LE(now, std::chrono::seconds(after.tv_sec) + std::chrono::nanoseconds(after.tv_nsec));
    EXPECT_GE(scheduler.asleep(), Scheduler::Duration{-1});  // two clocks, one after the other
}

}  // namespace
}  // namespace kestrix::platform
