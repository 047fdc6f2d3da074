#include "platform/AccessoryUri.h"

#include <charconv>
#include <filesystem>

namespace kestrix::platform {
namespace {

bool isSchemeText(std::string_view text) {
    for (const char c : text) {
        if ((c < 'a' || c > 'z') && (c < 'A' || c > 'Z')) return false;
    }
    return !text.empty();
}

std::string lowered(std::string_view ascii) {
    std::string result(ascii);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

// None when any piece is not key=value.
std::optional<std::map<std::string, std::string>> parseOptions(std::string_view text) {
    std::map<std::string, std::string> options;
    while (true) {
        const std::size_t end = text.find('&');
        const std::string_view piece = text.substr(0, end);
        const std::size_t equals = piece.find('=');
        if (equals == 0 || equals == std::string_view::npos) return std::nullopt;
        options.emplace(piece.substr(0, equals), piece.substr(equals + 1));
        if (end == std::string_view::npos) return options;
        text.remove_prefix(end + 1);
    }
}

}  // namespace

std::optional<AccessoryUri> parseAccessoryUri(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || !isSchemeText(text.substr(0, colon))) return std::nullopt;
    AccessoryUri uri;
    uri.scheme = lowered(text.substr(0, colon));
    std::string_view rest = text.substr(colon + 1);
    if (rest.substr(0, 2) == "//") rest.remove_prefix(2);
    const std::size_t question = rest.rfind('?');
    if (question != std::string_view::npos) {
        if (auto options = parseOptions(rest.substr(question + 1))) {
            uri.options = std::move(*options);
            rest = rest.substr(0, question);
        }
    }
    uri.target = rest;
    return uri;
}

std::string captureUri(const std::string& path) {
    std::string uri = "replay:" + path;
    // An option of its own, behind what would be taken for one.
    if (!parseAccessoryUri(uri)->options.empty()) uri += "?speed=1";
    return uri;
}

std::string withAbsolutePath(const std::string& text, const std::string& folder) {
    const auto uri = parseAccessoryUri(text);
    if (!uri || uri->target.empty() || uri->target.front() == '/') return text;
    const bool isFile = uri->scheme == "replay" || uri->scheme == "serial" ||
                        (uri->scheme == "simulator" && uri->target.find_first_of("./") != std::string::npos);
    if (!isFile) return text;
    const std::size_t at = text.find(uri->target, text.find(':'));
    const std::string path = (std::filesystem::path(folder) / uri->target).lexically_normal().string();
    if (uri->scheme == "replay" && uri->options.empty()) return captureUri(path);
    return uri->scheme + ':' + path + text.substr(at + uri->target.size());
}

bool isSamePlace(const std::string& one, const std::string& other) {
    const auto first = parseAccessoryUri(one);
    const auto second = parseAccessoryUri(other);
    if (!first || !second || first->scheme != second->scheme) return one == other;
    // An address of Bluetooth is written in both cases.
    return first->scheme == "bluetooth" ? lowered(first->target) == lowered(second->target)
                                        : first->target == second->target;
}

std::optional<std::string> takeOption(AccessoryUri& uri, const std::string& key) {
    const auto found = uri.options.find(key);
    if (found == uri.options.end()) return std::nullopt;
    std::string value = std::move(found->second);
    uri.options.erase(found);
    return value;
}

std::optional<HostAndPort> parseHostAndPort(std::string_view text, int lowestPort) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos || colon == 0) return std::nullopt;
    const std::optional<int> port = parseNumber(text.substr(colon + 1), lowestPort, 65535);
    if (!port) return std::nullopt;
    std::string_view host = text.substr(0, colon);
    if (host.front() == '[') {
        if (host.size() < 3 || host.back() != ']') return std::nullopt;
        host = host.substr(1, host.size() - 2);
    } else if (host.find_first_of(":/ ") != std::string_view::npos) {
        return std::nullopt;
    }
    return HostAndPort{std::string(host), static_cast<std::uint16_t>(*port)};
}

std::optional<int> parseNumber(std::string_view text, int least, int most) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < least || value > most)
        return std::nullopt;
    return value;
}

std::optional<double> parsePlaySpeed(std::string_view text) {
    if (text == "max") return 0.0;
    double speed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), speed);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return speed >= 0.1 && speed <= 100000 ? std::optional(speed) : std::nullopt;
}

}  // namespace kestrix::platform
