#pragma once

#include <QString>

#include <memory>
#include <string>

#include "platform/Keyring.h"
#include "platform/Mail.h"

namespace kestrix::platform {

struct MailParts {
    std::unique_ptr<MailTransport> transport{};
    std::unique_ptr<Keyring> keyring{};
    std::string problem{};  // in one line, when there are none
};

// Where the module lies, in the build tree and installed: beside the folder of the running program.
QString mailModulePath();

// What mails and asks for passwords, made anew. The libraries for it are dear to load, so the program does
// not start with them: the first call loads them, in some ten milliseconds, and they stay.
MailParts loadMail(const QString& module = mailModulePath());

}  // namespace kestrix::platform
