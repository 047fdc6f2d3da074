// Whatever stands in a mail's fields, its text has the headers of a mail and no other, and sound lines.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "platform/MailMessage.h"
#include "platform/MailSettings.h"

namespace {

using kestrix::platform::MailAttachment;
using kestrix::platform::MailMessage;
using kestrix::platform::MailServer;

void require(bool holds) {
    if (!holds) std::abort();
}

// Fields stand one behind the other, separated by a byte of the input's own choice: its first.
std::array<std::string, 7> fieldsOf(std::string_view input) {
    std::array<std::string, 7> fields;
    const char separator = input.empty() ? '\0' : input.front();
    input.remove_prefix(std::min<std::size_t>(input.size(), 1));
    for (std::string& field : fields) {
        const std::size_t end = std::min(input.find(separator), input.size());
        field = input.substr(0, end);
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    return fields;
}

std::vector<std::string_view> linesOf(std::string_view text) {
    constexpr std::size_t kLongest = 998;
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find("\r\n");
        require(end != std::string_view::npos && end <= kLongest);
        lines.push_back(text.substr(0, end));
        for (const char c : lines.back()) require(c == '\t' || (c >= ' ' && c <= '~'));
        text.remove_prefix(end + 2);
    }
    return lines;
}

// The headers that begin at `line`, by name, and on to the line behind them.
std::vector<std::string> headersAt(const std::vector<std::string_view>& lines, std::size_t& line) {
    std::vector<std::string> names;
    for (; line < lines.size() && !lines[line].empty(); ++line) {
        if (lines[line].front() == ' ' || lines[line].front() == '\t') {
            require(!names.empty() && lines[line].find_first_not_of(" \t") != std::string_view::npos);
            continue;
        }
        const std::size_t colon = lines[line].find(':');
        require(colon != std::string_view::npos);
        names.emplace_back(lines[line].substr(0, colon));
    }
    require(line < lines.size());
    return names;
}

void checkText(const MailMessage& mail) {
    const std::string text = kestrix::platform::mailText(mail);
    const std::vector<std::string_view> lines = linesOf(text);
    std::vector<std::string> expected;
    if (!mail.from.empty()) expected.emplace_back("From");
    if (!mail.recipient.empty()) expected.emplace_back("To");
    for (const char* name : {"Subject", "Date", "Message-ID", "MIME-Version", "Content-Type"})
        expected.emplace_back(name);
    if (!mail.attachment) expected.emplace_back("Content-Transfer-Encoding");
    std::size_t line = 0;
    require(headersAt(lines, line) == expected);
    std::size_t parts = 0;
    for (; line < lines.size(); ++line) {
        if (!lines[line].starts_with("--=-") || lines[line].ends_with("--")) continue;
        ++parts;
        for (const std::string& name : headersAt(lines, ++line)) require(name.starts_with("Content-"));
    }
    require(parts == (mail.attachment ? 2U : 0U));
}

bool isOneLine(const std::string& text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < ' '; });
}

void checkServer(const std::string& text) {
    MailServer server;
    const std::string problem = kestrix::platform::readMailUri(text, server);
    require(isOneLine(problem));
    require(problem.empty() ? kestrix::platform::mailServerProblem(server).empty() : server.host.empty());
    require(isOneLine(server.host + server.user));
    MailServer other;
    require(isOneLine(kestrix::platform::readHostAndPort(text, other)) && isOneLine(other.host));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto fields = fieldsOf({reinterpret_cast<const char*>(data), size});
    MailMessage mail;
    mail.from = fields[0];
    mail.recipient = fields[1];
    mail.subject = fields[2];
    mail.htmlBody = fields[3];
    checkText(mail);
    mail.attachment = MailAttachment{fields[4], fields[5], fields[6]};
    checkText(mail);
    for (const std::string& address : {fields[0], fields[1]}) {
        const std::string problem = kestrix::platform::mailAddressProblem(address);
        require(isOneLine(problem));
        require(!problem.empty() || address.find_first_of("<>,;: \t\r\n\"") == std::string::npos);
    }
    checkServer(fields[1]);
    return 0;
}
