#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kestrix::platform {

// "scheme:target?key=value&key=value". "scheme://target" is the same.
struct AccessoryUri {
    std::string scheme;  // lower case
    std::string target;  // file, port, host:port or scenario; as given
    std::map<std::string, std::string> options;
};

// None when the text has no scheme. A question mark opens options only where key=value follows it, so that a
// file may have one in its name.
std::optional<AccessoryUri> parseAccessoryUri(std::string_view text);

// Of a capture's file, whatever its path looks like.
std::string captureUri(const std::string& path);

// The same place for a process with another current folder: a relative path is made one of this folder, also
// of a scenario's file, which has a dot or a slash in its name. The text itself where it names no file.
std::string withAbsolutePath(const std::string& uri, const std::string& folder);

// Whether they name one place, with whatever options.
bool isSamePlace(const std::string& one, const std::string& other);

// Takes an option out of the URI; what is left in the end was not known.
std::optional<std::string> takeOption(AccessoryUri& uri, const std::string& key);

struct HostAndPort {
    std::string host;  // without the brackets of an IPv6 address
    std::uint16_t port = 0;
};

// "host:port" or "[address]:port", with a port from lowestPort to 65535.
std::optional<HostAndPort> parseHostAndPort(std::string_view text, int lowestPort = 1);

// The whole text as a decimal number.
std::optional<int> parseNumber(std::string_view text, int least, int most);

// How many times as fast as the tester: a number from 0.1 to 100000, or "max", which is 0: flat out. Played
// slower than that, the frames of a tester, four a second, would come so rarely that it counts as gone
// between them.
std::optional<double> parsePlaySpeed(std::string_view text);
// What to say of a text that is none.
inline constexpr const char* kWrongPlaySpeed = "the speed is neither \"max\" nor a number from 0.1 to 100000";

}  // namespace kestrix::platform
