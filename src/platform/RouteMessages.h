#pragma once

#include <cstddef>
#include <span>

namespace kestrix::platform {

// What the kernel has answered so far to the question for its routes.
struct RouteAnswer {
    bool defaultRoute = false;
    bool complete = false;  // nothing more will come
    bool failed = false;    // it could not say, or what it said cannot be read
};

// Reads a datagram of netlink messages (rtnetlink) into the answer. A default route is one of the main table,
// to ordinary machines, without a destination, over a link that is up.
void readRoutes(std::span<const std::byte> datagram, RouteAnswer& answer);

}  // namespace kestrix::platform
