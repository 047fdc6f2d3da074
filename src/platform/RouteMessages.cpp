#include "platform/RouteMessages.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>

namespace kestrix::platform {
namespace {

template <class T>
bool copyTo(T& to, std::span<const std::byte> bytes) {
    if (bytes.size() < sizeof to) return false;
    std::memcpy(&to, bytes.data(), sizeof to);
    return true;
}

bool isDefaultRoute(const rtmsg& route) {
    return (route.rtm_family == AF_INET || route.rtm_family == AF_INET6) && route.rtm_dst_len == 0 &&
           route.rtm_table == RT_TABLE_MAIN && route.rtm_type == RTN_UNICAST &&
           (route.rtm_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) == 0;
}

void readMessage(const nlmsghdr& header, std::span<const std::byte> content, RouteAnswer& answer) {
    switch (header.nlmsg_type) {
        case NLMSG_DONE:
            answer.complete = true;
            break;
        case NLMSG_ERROR:
        case NLMSG_OVERRUN:
            answer.complete = answer.failed = true;
            break;
        case RTM_NEWROUTE:
            if (rtmsg route{}; copyTo(route, content)) {
                answer.defaultRoute = answer.defaultRoute || isDefaultRoute(route);
            } else {
                answer.complete = answer.failed = true;
            }
            break;
        default:
            break;
    }
}

}  // namespace

void readRoutes(std::span<const std::byte> datagram, RouteAnswer& answer) {
    while (!datagram.empty() && !answer.complete) {
        nlmsghdr header{};
        if (!copyTo(header, datagram) || header.nlmsg_len < sizeof header ||
            header.nlmsg_len > datagram.size()) {
            answer.complete = answer.failed = true;
            return;
        }
        readMessage(header, datagram.subspan(NLMSG_HDRLEN, header.nlmsg_len - NLMSG_HDRLEN), answer);
        const std::size_t taken = NLMSG_ALIGN(std::size_t{header.nlmsg_len});
        datagram = datagram.subspan(std::min(taken, datagram.size()));
    }
}

}  // namespace kestrix::platform
