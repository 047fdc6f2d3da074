#include "platform/RouteWatcher.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/RouteMessages.h"

namespace kestrix::platform {
namespace {

using Datagram = std::array<std::byte, 32768>;

// Of the routes; bound to the groups, it hears of changes.
int openSocket(int type, unsigned groups) {
    const int opened = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | type, NETLINK_ROUTE);
    if (opened < 0) return opened;
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = groups;
    if (bind(opened, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return opened;
    close(opened);
    return -1;
}

// From the kernel alone: any program may send to such a socket.
ssize_t receiveFromKernel(int from, Datagram& datagram) {
    for (;;) {
        sockaddr_nl sender{};
        socklen_t length = sizeof sender;
        const ssize_t count = recvfrom(from, datagram.data(), datagram.size(), 0,
                                       reinterpret_cast<sockaddr*>(&sender), &length);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 || sender.nl_pid == 0) return count;
    }
}

bool askForRoutes(int to) {
    struct {
        nlmsghdr header;
        rtmsg route;
    } question{};
    question.header.nlmsg_len = sizeof question;
    question.header.nlmsg_type = RTM_GETROUTE;
    question.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    question.route.rtm_family = AF_UNSPEC;
    return send(to, &question, sizeof question, 0) == static_cast<ssize_t>(sizeof question);
}

// The kernel answers while it is asked: nothing is waited for.
bool hasDefaultRoute() {
    const int asked = openSocket(SOCK_NONBLOCK, 0);
    if (asked < 0) return false;
    RouteAnswer answer;
    answer.failed = !askForRoutes(asked);
    Datagram datagram;
    while (!answer.failed && !answer.complete) {
        const ssize_t count = receiveFromKernel(asked, datagram);
        answer.failed = count <= 0;
        if (count > 0) readRoutes(std::span(datagram).first(static_cast<std::size_t>(count)), answer);
    }
    close(asked);
    return answer.defaultRoute && !answer.failed;
}

}  // namespace

RouteWatcher::RouteWatcher()
    // A link that goes down takes its routes with it without a word about them.
    : events_(openSocket(SOCK_NONBLOCK, RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE)),
      // Behind the socket, so that no change comes between.
      reachable_(hasDefaultRoute()) {
    if (events_ < 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(events_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { look(); });
}

RouteWatcher::~RouteWatcher() {
    notifier_.reset();
    if (events_ >= 0) close(events_);
}

void RouteWatcher::look() {
    // What the events say is not read: there may be more of them than the kernel keeps.
    Datagram datagram;
    while (receiveFromKernel(events_, datagram) > 0 || errno == ENOBUFS) continue;
    const bool before = std::exchange(reachable_, hasDefaultRoute());
    if (reachable_ != before && changed_) changed_();
}

}  // namespace kestrix::platform
