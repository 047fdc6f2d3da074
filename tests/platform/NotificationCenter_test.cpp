#include "platform/NotificationCenter.h"

#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrix::platform {
namespace {

using Log = std::vector<std::string>;
using Subscription = NotificationCenter::Subscription;

TEST(NotificationCenter, PostsAtOnceToTheObserversOfTheNameInOrder) {
    NotificationCenter center;
    Log log;
    const Subscription first = center.addObserver("a", [&](const Notification&) { log.push_back("first"); });
    const Subscription other = center.addObserver("b", [&](const Notification&) { log.push_back("other"); });
    const Subscription second =
        center.addObserver("a", [&](const Notification&) { log.push_back("second"); });
    center.post({"a"});
    EXPECT_EQ(log, (Log{"first", "second"}));
}

TEST(NotificationCenter, CarriesTheObjectAndTheUserInfo) {
    NotificationCenter center;
    std::string seen;
    const Subscription subscription = center.addObserver("a", [&](const Notification& event) {
        seen =
            std::any_cast<std::string>(event.object) + std::any_cast<std::string>(event.userInfo.at("key"));
        EXPECT_EQ(event.name, "a");
    });
    center.post({"a", std::string("object"), {{"key", std::string(" info")}}});
    EXPECT_EQ(seen, "object info");
}

TEST(NotificationCenter, APostWithoutObserversIsHarmless) {
    NotificationCenter center;
    int calls = 0;
    const Subscription subscription = center.addObserver("a", [&](const Notification&) { ++calls; });
    center.post({"nobody"});
    EXPECT_EQ(calls, 0);
}

TEST(NotificationCenter, ADestroyedSubscriptionIsNotCalled) {
    NotificationCenter center;
    int calls = 0;
    {
        const Subscription subscription = center.addObserver("a", [&](const Notification&) { ++calls; });
    }
    center.post({"a"});
    EXPECT_EQ(calls, 0);
}

TEST(NotificationCenter, AssigningOverASubscriptionEndsIt) {
    NotificationCenter center;
    Log log;
    Subscription subscription = center.addObserver("a", [&](const Notification&) { log.push_back("old"); });
    subscription = center.addObserver("a", [&](const Notification&) { log.push_back("new"); });
    center.post({"a"});
    EXPECT_EQ(log, Log{"new"});
}

TEST(NotificationCenter, AHandlerMayUnsubscribeItself) {
    NotificationCenter center;
    int calls = 0;
    Subscription subscription;
    subscription = center.addObserver("a", [&](const Notification&) {
        ++calls;
        subscription.cancel();
    });
    center.post({"a"});
    center.post({"a"});
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, AHandlerThatUnsubscribedItselfIsNotCalledByItsOwnPost) {
    NotificationCenter center;
    int calls = 0;
    Subscription subscription;
    subscription = center.addObserver("a", [&](const Notification&) {
        ++calls;
        subscription.cancel();
        if (calls < 3) center.post({"a"});
    });
    center.post({"a"});
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, AHandlerMayUnsubscribeALaterOne) {
    NotificationCenter center;
    int calls = 0;
    Subscription later;
    const Subscription first = center.addObserver("a", [&](const Notification&) { later.cancel(); });
    later = center.addObserver("a", [&](const Notification&) { ++calls; });
    center.post({"a"});
    EXPECT_EQ(calls, 0);
}

TEST(NotificationCenter, AnObserverAddedInsideAPostIsCalledFromTheNextPostOn) {
    NotificationCenter center;
    int posts = 0;
    int calls = 0;
    Subscription added;
    const Subscription first = center.addObserver("a", [&](const Notification&) {
        if (posts++ == 0) added = center.addObserver("a", [&](const Notification&) { ++calls; });
    });
    int others = 0;
    const Subscription second = center.addObserver("a", [&](const Notification&) { ++others; });
    center.post({"a"});
    EXPECT_EQ(calls, 0);
    center.post({"a"});
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(others, 2);
}

TEST(NotificationCenter, AHandlerMayPostTheSameNameAgain) {
    NotificationCenter center;
    Log log;
    const Subscription subscription = center.addObserver("a", [&](const Notification& event) {
        const int depth = std::any_cast<int>(event.object);
        log.push_back("in " + std::to_string(depth));
        if (depth < 2) center.post({"a", depth + 1});
        log.push_back("out " + std::to_string(depth));
    });
    center.post({"a", 1});
    EXPECT_EQ(log, (Log{"in 1", "in 2", "out 2", "out 1"}));
}

TEST(NotificationCenter, ASubscriptionMayOutliveTheCenter) {
    auto center = std::make_unique<NotificationCenter>();
    std::optional<Subscription> subscription = center->addObserver("a", [](const Notification&) {});
    center.reset();
    subscription.reset();
    EXPECT_FALSE(subscription.has_value());
}

TEST(NotificationCenter, TheDefaultCenterIsAlwaysTheSame) {
    EXPECT_EQ(&NotificationCenter::defaultCenter(), &NotificationCenter::defaultCenter());
}

}  // namespace
}  // namespace kestrix::platform
