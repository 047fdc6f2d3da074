#include "platform/MailModule.h"

#include "platform/MailModuleEntry.h"
#include "platform/Module.h"

namespace kestrix::platform {

QString mailModulePath() {
    return modulePath(QStringLiteral("kestrix-mail.so"), QStringLiteral(KESTRIX_MAIL_MODULE));
}

MailParts loadMail(const QString& path) {
    const LoadedModule module = loadModule(path, kMailModuleEntry, "no mail can be sent");
    MailParts parts;
    parts.problem = module.problem;
    if (module.entry != nullptr) reinterpret_cast<MakeMailParts>(module.entry)(parts);
    return parts;
}

}  // namespace kestrix::platform
