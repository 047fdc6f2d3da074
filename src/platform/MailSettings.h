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
std::string mailAddressProblem(std::string_view address);
std::string mailServerProblem(const MailServer& server);

// Reads "HOST", "HOST:PORT", "[::1]:25" into host and port; what is wrong, in one line; empty: nothing.
std::string readHostAndPort(std::string_view text, MailServer& server);

// Reads "smtp://USER@HOST:PORT" (StartTls) or "smtps://..." (Tls); user and port may be missing. Answers what
// is wrong, in one line; empty: nothing. A password in it is refused: others could read it.
std::string readMailUri(std::string_view uri, MailServer& server);

// Under which a server's password is kept in the keyring: "USER@HOST:PORT".
std::string keyringName(const MailServer& server);

}  // namespace kestrix::platform
