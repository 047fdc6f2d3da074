#include "platform/MailModule.h"

#include "platform/MailModuleEntry.h"
#include "platform/Module.h"

namespace kestrix::platform {

QString mailModulePath() {
    return modulePath(QStringLiteral("kestrix-mail.so"), QStringLiteral(KESTRIX_MAIL_MODULE));
}

MailParts loadMail(const QString& path) {
    return loadParts<MailParts>(path, kMailModuleEntry, "no mail can be sent");
}

}  // namespace kestrix::platform
