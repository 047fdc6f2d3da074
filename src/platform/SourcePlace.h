#pragma once

#include <string>

namespace kestrix::platform {

// What a user calls the place where a source looks, before the tester has said its name: "/dev/ttyUSB0",
// "192.168.1.20:4000", a capture's file name, "Any paired tester". Printable; the text itself for one that is
// no URI.
std::string placeOf(const std::string& uri);

}  // namespace kestrix::platform
