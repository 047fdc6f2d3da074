#pragma once

#include <string>
#include <string_view>

namespace kestrix::platform {

// A text that comes from outside (a device's name, another program's reason), fit for a log and a terminal:
// one line, at most 500 characters long, without control characters, invisible directions and bytes that are
// no UTF-8. Each of those becomes U+FFFD.
std::string printableText(std::string_view text);

}  // namespace kestrix::platform
