#pragma once

#include <string>
#include <string_view>

#include "platform/Mail.h"
#include "platform/UserDefaults.h"

namespace kestrix::platform {

// The user's mail server and his own address, as the settings keep them. The password is not among them.
struct MailSettings {
    MailServer server;
    std::string from;
};

MailSettings readMailSettings(const UserDefaults& defaults);
void keepMailSettings(UserDefaults& defaults, const MailSettings& settings);

// Each says in one line what is wrong with what the user typed; empty: nothing.
// whose: the address, in that line: "type the recipient's address". "-" is none.
std::string mailAddressProblem(std::string_view address, std::string_view whose = "recipient");
std::string mailServerProblem(const MailServer& server);

// Reads "HOST", "HOST:PORT", "[::1]:25" into host (without brackets) and port (0 when there is none); what is
// wrong, in one line; empty: nothing. With something wrong the server stays as it was.
std::string readHostAndPort(std::string_view text, MailServer& server);

// Reads "smtp://USER@HOST:PORT" (StartTls) or "smtps://..." (Tls); user and port may be missing; what is not
// an ordinary letter of the user's name is written as %40. Answers as readHostAndPort. A password in it is
// refused: others could read it.
std::string readMailUri(std::string_view uri, MailServer& server);

// The port that is meant: the usual one where none is given.
std::uint16_t portOf(const MailServer& server);

// "HOST:PORT", for a line of text; an IPv6 address stands in brackets.
std::string hostAndPort(const MailServer& server);

// Whether the name or address is this machine's own loopback, where encryption is not required.
bool isLoopback(std::string_view host);

// Under which a server's password is kept in the keyring: "USER@HOST:PORT".
std::string keyringName(const MailServer& server);

}  // namespace kestrix::platform
