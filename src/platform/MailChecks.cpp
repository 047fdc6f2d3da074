// What a user may type about a mail. Reads no settings, so that the transport checks with it as well.
#include <arpa/inet.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>

#include "platform/MailSettings.h"
#include "platform/PrintableText.h"

namespace kestrix::platform {
namespace {

constexpr std::size_t kLongestAddress = 254;
constexpr std::size_t kLongestLocalPart = 64;
constexpr std::size_t kLongestHost = 253;
constexpr std::size_t kLongestLabel = 63;

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

bool isOfLocalPart(char c) {
    return isLetterOrDigit(c) || std::string_view("!#$%&'*+-/=?^_`{|}~.").find(c) != std::string_view::npos;
}

// Letters, digits, "-" and "_" between dots.
bool isHostName(std::string_view name) {
    if (name.empty() || name.size() > kLongestHost) return false;
    for (;;) {
        const std::size_t end = std::min(name.find('.'), name.size());
        const std::string_view label = name.substr(0, end);
        if (label.empty() || label.size() > kLongestLabel || label.front() == '-' || label.back() == '-')
            return false;
        if (!std::all_of(label.begin(), label.end(),
                         [](char c) { return isLetterOrDigit(c) || c == '-' || c == '_'; }))
            return false;
        if (end == name.size()) return true;
        name.remove_prefix(end + 1);
    }
}

bool isIPv4(std::string_view text, in_addr* address = nullptr) {
    in_addr unused{};
    return inet_pton(AF_INET, std::string(text).c_str(), address != nullptr ? address : &unused) == 1;
}

bool isIPv6(std::string_view text, in6_addr* address = nullptr) {
    in6_addr unused{};
    return text.find('\0') == std::string_view::npos &&
           inet_pton(AF_INET6, std::string(text).c_str(), address != nullptr ? address : &unused) == 1;
}

bool isHost(std::string_view host) {
    if (isIPv6(host)) return true;
    if (!isHostName(host)) return false;
    // Digits and dots alone are an address; one that is cut short or too large means something else to each
    // resolver.
    return isIPv4(host) || host.find_first_not_of("0123456789.") != std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::string hostProblem(std::string_view host) {
    if (host.empty()) return "type the mail server's name";
    if (isHost(host)) return {};
    return printableText("\"" + std::string(host) + "\" is no name of a mail server");
}

std::string portProblem(std::string_view text, std::uint16_t& port) {
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, port);
    if (error == std::errc() && stopped == end && port != 0) return {};
    return printableText("\"" + std::string(text) + "\" is no port: a port is a number from 1 to 65535");
}

std::string userProblem(std::string_view user) {
    if (std::none_of(user.begin(), user.end(), isControl)) return {};
    return "the user's name has a character that cannot be typed";
}

// False for a "%" without its two digits.
bool decodePercents(std::string_view text, std::string& decoded) {
    while (!text.empty()) {
        std::size_t taken = 1;
        char c = text.front();
        if (c == '%') {
            unsigned char value = 0;
            taken = 3;
            if (text.size() < taken) return false;
            const auto [stopped, error] = std::from_chars(text.data() + 1, text.data() + taken, value, 16);
            if (error != std::errc() || stopped != text.data() + taken) return false;
            c = static_cast<char>(value);
        }
        decoded += c;
        text.remove_prefix(taken);
    }
    return true;
}

bool takeScheme(std::string_view& uri, std::string_view scheme) {
    const auto sameLetter = [](char a, char b) { return (a | 0x20) == b || a == b; };
    if (uri.size() < scheme.size() || !std::equal(scheme.begin(), scheme.end(), uri.begin(),
                                                  [&](char want, char c) { return sameLetter(c, want); }))
        return false;
    uri.remove_prefix(scheme.size());
    return true;
}

}  // namespace

std::string mailAddressProblem(std::string_view address, std::string_view whose) {
    const std::string possessor = "the " + std::string(whose) + "'s address";
    if (address.empty() || address == "-") return "type " + possessor;
    const std::size_t at = address.find('@');
    const std::string_view local = address.substr(0, std::min(at, address.size()));
    for (const char c : local) {
        if (isOfLocalPart(c)) continue;
        const bool shown = !isControl(c) && static_cast<unsigned char>(c) < 0x80 && c != ' ';
        return possessor + (shown ? " has a character that no address has: " + std::string(1, c)
                                  : std::string(" has a blank, or a letter that no address has"));
    }
    const bool dotted =
        local.starts_with('.') || local.ends_with('.') || local.find("..") != std::string_view::npos;
    const bool whole =
        at != std::string_view::npos && !local.empty() && !dotted && isHostName(address.substr(at + 1));
    if (!whole) return possessor + " does not look like name@example.org";
    if (local.size() > kLongestLocalPart || address.size() > kLongestAddress)
        return possessor + " is longer than any address";
    return {};
}

std::string mailServerProblem(const MailServer& server) {
    if (std::string problem = hostProblem(server.host); !problem.empty()) return problem;
    if (std::string problem = userProblem(server.user); !problem.empty()) return problem;
    if (!server.caFile.empty() &&
        (server.caFile.find('\0') != std::string::npos || access(server.caFile.c_str(), R_OK) != 0))
        return printableText("the file of certificates, " + server.caFile + ", cannot be read");
    return {};
}

std::string readHostAndPort(std::string_view text, MailServer& server) {
    text = trimmed(text);
    std::string_view host = text;
    std::string_view port;
    bool hasPort = false;
    if (text.starts_with('[')) {
        const std::size_t end = text.find(']');
        host = end == std::string_view::npos ? text : text.substr(1, end - 1);
        const std::string_view rest = end == std::string_view::npos ? "" : text.substr(end + 1);
        if (!isIPv6(host) || (!rest.empty() && rest.front() != ':')) return hostProblem(text);
        hasPort = !rest.empty();
        if (hasPort) port = rest.substr(1);
    } else if (!isIPv6(text)) {
        const std::size_t colon = text.find(':');
        host = text.substr(0, colon);
        hasPort = colon != std::string_view::npos;
        if (hasPort) port = text.substr(colon + 1);
    }
    if (std::string problem = hostProblem(host); !problem.empty()) return problem;
    std::uint16_t number = 0;
    if (hasPort) {
        if (std::string problem = portProblem(port, number); !problem.empty()) return problem;
    }
    server.host = host;
    server.port = number;
    return {};
}

std::string readMailUri(std::string_view uri, MailServer& server) {
    MailServer read = server;
    uri = trimmed(uri);
    if (takeScheme(uri, "smtps://")) {
        read.security = MailSecurity::Tls;
    } else if (takeScheme(uri, "smtp://")) {
        read.security = MailSecurity::StartTls;
    } else {
        return "a mail server is written as smtp://USER@HOST:PORT or smtps://USER@HOST:PORT";
    }
    if (uri.ends_with('/')) uri.remove_suffix(1);
    read.user.clear();
    if (const std::size_t at = uri.rfind('@'); at != std::string_view::npos) {
        const std::string_view user = uri.substr(0, at);
        if (user.find(':') != std::string_view::npos)
            return "a password does not belong into the server's address, where others could read it";
        if (!decodePercents(user, read.user)) return "a \"%\" in the user's name is written as %25";
        uri.remove_prefix(at + 1);
    }
    if (std::string problem = userProblem(read.user); !problem.empty()) return problem;
    if (std::string problem = readHostAndPort(uri, read); !problem.empty()) return problem;
    server = std::move(read);
    return {};
}

std::uint16_t portOf(const MailServer& server) {
    constexpr std::uint16_t kSubmission = 587;
    constexpr std::uint16_t kSubmissionOverTls = 465;
    if (server.port != 0) return server.port;
    return server.security == MailSecurity::Tls ? kSubmissionOverTls : kSubmission;
}

std::string hostAndPort(const MailServer& server) {
    const bool brackets = server.host.find(':') != std::string::npos;
    return (brackets ? "[" + server.host + "]" : server.host) + ":" + std::to_string(portOf(server));
}

bool isLoopback(std::string_view host) {
    if (in_addr address{}; isIPv4(host, &address)) return ntohl(address.s_addr) >> 24U == IN_LOOPBACKNET;
    if (in6_addr address{}; isIPv6(host, &address)) return IN6_IS_ADDR_LOOPBACK(&address);
    std::string name(host);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
    return name == "localhost" || name.ends_with(".localhost");
}

std::string keyringName(const MailServer& server) {
    return server.user + "@" + hostAndPort(server);
}

}  // namespace kestrix::platform
