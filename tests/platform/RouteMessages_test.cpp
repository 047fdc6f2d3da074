#include "platform/RouteMessages.h"

#include <gtest/gtest.h>

#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <cstring>
#include <vector>

namespace kestrix::platform {
namespace {

using Bytes = std::vector<std::byte>;

void append(Bytes& bytes, const void* from, std::size_t size) {
    const auto* const begin = static_cast<const std::byte*>(from);
    bytes.insert(bytes.end(), begin, begin + size);
}

Bytes message(std::uint16_t type, const Bytes& content = {}) {
    nlmsghdr header{};
    header.nlmsg_len = static_cast<std::uint32_t>(sizeof header + content.size());
    header.nlmsg_type = type;
    Bytes bytes;
    append(bytes, &header, sizeof header);
    bytes.insert(bytes.end(), content.begin(), content.end());
    bytes.resize(NLMSG_ALIGN(bytes.size()));
    return bytes;
}

// With an attribute behind it, of an odd length.
Bytes routeMessage(const rtmsg& route) {
    Bytes content;
    append(content, &route, sizeof route);
    content.resize(content.size() + 7);
    return message(RTM_NEWROUTE, content);
}

rtmsg defaultRoute() {
    rtmsg route{};
    route.rtm_family = AF_INET;
    route.rtm_table = RT_TABLE_MAIN;
    route.rtm_type = RTN_UNICAST;
    return route;
}

RouteAnswer answerTo(const std::vector<Bytes>& messages) {
    Bytes datagram;
    for (const Bytes& one : messages) datagram.insert(datagram.end(), one.begin(), one.end());
    RouteAnswer answer;
    readRoutes(datagram, answer);
    return answer;
}

TEST(RouteMessages, ADefaultRouteIsFoundAmongOthers) {
    rtmsg local = defaultRoute();
    local.rtm_dst_len = 24;
    const RouteAnswer answer =
        answerTo({routeMessage(local), routeMessage(defaultRoute()), message(NLMSG_DONE)});
    EXPECT_TRUE(answer.defaultRoute);
    EXPECT_TRUE(answer.complete);
    EXPECT_FALSE(answer.failed);
}

TEST(RouteMessages, OneOfTheNewerProtocolCountsToo) {
    rtmsg route = defaultRoute();
    route.rtm_family = AF_INET6;
    EXPECT_TRUE(answerTo({routeMessage(route)}).defaultRoute);
}

TEST(RouteMessages, WhatLeadsNowhereIsNone) {
    const auto counts = [](auto change) {
        rtmsg route = defaultRoute();
        change(route);
        return answerTo({routeMessage(route)}).defaultRoute;
    };
    EXPECT_TRUE(counts([](rtmsg&) {}));
    EXPECT_FALSE(counts([](rtmsg& route) { route.rtm_dst_len = 1; }));
    EXPECT_FALSE(counts([](rtmsg& route) { route.rtm_table = RT_TABLE_LOCAL; }));
    EXPECT_FALSE(counts([](rtmsg& route) { route.rtm_type = RTN_UNREACHABLE; }));
    EXPECT_FALSE(counts([](rtmsg& route) { route.rtm_type = RTN_BLACKHOLE; }));
    EXPECT_FALSE(counts([](rtmsg& route) { route.rtm_flags = RTNH_F_LINKDOWN; }));
    EXPECT_FALSE(counts([](rtmsg& route) { route.rtm_flags = RTNH_F_DEAD; }));
    EXPECT_FALSE(counts([](rtmsg& route) { route.rtm_family = AF_BRIDGE; }));
}

TEST(RouteMessages, TheAnswerMayComeInSeveralDatagrams) {
    RouteAnswer answer;
    readRoutes(routeMessage(defaultRoute()), answer);
    EXPECT_FALSE(answer.complete);
    readRoutes(message(NLMSG_DONE), answer);
    EXPECT_TRUE(answer.complete);
    EXPECT_TRUE(answer.defaultRoute);
}

TEST(RouteMessages, NothingBehindTheEndIsRead) {
    EXPECT_FALSE(answerTo({message(NLMSG_DONE), routeMessage(defaultRoute())}).defaultRoute);
}

TEST(RouteMessages, AnErrorIsTheEnd) {
    const RouteAnswer answer = answerTo({message(NLMSG_ERROR, Bytes(sizeof(nlmsgerr)))});
    EXPECT_TRUE(answer.complete);
    EXPECT_TRUE(answer.failed);
}

TEST(RouteMessages, OtherMessagesArePassedOver) {
    EXPECT_TRUE(answerTo({message(RTM_NEWLINK, Bytes(3)), message(NLMSG_NOOP), routeMessage(defaultRoute())})
                    .defaultRoute);
}

// Cut anywhere it ends, as failed unless a whole message came before; it never reads beyond.
TEST(RouteMessages, BytesThatAreCutOffAreAFailure) {
    const Bytes whole = routeMessage(defaultRoute());
    for (std::size_t length = 1; length < sizeof(nlmsghdr) + sizeof(rtmsg); ++length) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        const RouteAnswer answer = answerTo({cut});
        EXPECT_TRUE(answer.failed && answer.complete) << length;
        EXPECT_FALSE(answer.defaultRoute) << length;
    }
    for (const std::uint32_t length : {0U, 15U, 1000U, 0xffffffffU}) {
        Bytes lying = whole;
        std::memcpy(lying.data(), &length, sizeof length);
        EXPECT_TRUE(answerTo({lying}).failed) << length;
    }
    EXPECT_TRUE(answerTo({message(RTM_NEWROUTE, Bytes(sizeof(rtmsg) - 1))}).failed);
}

}  // namespace
}  // namespace kestrix::platform
