#include "platform/MailSettings.h"

#include <QString>

#include <limits>

namespace kestrix::platform {
namespace {

const QString kHostKey = QStringLiteral("mailHost");
const QString kPortKey = QStringLiteral("mailPort");
const QString kSecurityKey = QStringLiteral("mailSecurity");
const QString kUserKey = QStringLiteral("mailUser");
const QString kFromKey = QStringLiteral("mailFrom");
const QString kCaFileKey = QStringLiteral("mailCaFile");
const QString kTls = QStringLiteral("tls");
const QString kStartTls = QStringLiteral("starttls");

}  // namespace

MailSettings readMailSettings(const UserDefaults& defaults) {
    const auto text = [&defaults](const QString& key) { return defaults.stringForKey(key).toStdString(); };
    MailSettings settings;
    settings.server.host = text(kHostKey);
    const int port = defaults.integerForKey(kPortKey);
    if (port > 0 && port <= std::numeric_limits<std::uint16_t>::max())
        settings.server.port = static_cast<std::uint16_t>(port);
    if (defaults.stringForKey(kSecurityKey) == kTls) settings.server.security = MailSecurity::Tls;
    settings.server.user = text(kUserKey);
    settings.server.caFile = text(kCaFileKey);
    settings.from = text(kFromKey);
    return settings;
}

void keepMailSettings(UserDefaults& defaults, const MailSettings& settings) {
    const auto keep = [&defaults](const QString& key, const std::string& text) {
        defaults.setString(key, QString::fromStdString(text));
    };
    const MailServer& server = settings.server;
    keep(kHostKey, server.host);
    defaults.setInteger(kPortKey, server.port);
    defaults.setString(kSecurityKey, server.security == MailSecurity::Tls ? kTls : kStartTls);
    keep(kUserKey, server.user);
    keep(kFromKey, settings.from);
    keep(kCaFileKey, server.caFile);
}

}  // namespace kestrix::platform
