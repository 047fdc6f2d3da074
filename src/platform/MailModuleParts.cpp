// What the module shows of itself.
#include "platform/MailModuleEntry.h"
#include "platform/SecretKeyring.h"
#include "platform/SmtpTransport.h"

extern "C" __attribute__((visibility("default"))) void kestrixMakeMailParts(
    kestrix::platform::MailParts& parts) {
    using namespace kestrix::platform;
    parts.transport = std::make_unique<SmtpTransport>();
    parts.keyring = std::make_unique<SecretKeyring>();
}

static_assert(std::is_same_v<kestrix::platform::MakeMailParts, decltype(&kestrixMakeMailParts)>);
