#include "storage/FolderChoice.h"

#include "platform/AccessoryUri.h"
#include "platform/UserDefaults.h"
#include "storage/ServiceDao.h"

namespace kestrix::storage {

Readings readingsOf(const std::string& uri) {
    const auto parsed = platform::parseAccessoryUri(uri);
    const bool madeUp = parsed && (parsed->scheme == "simulator" || parsed->scheme == "replay");
    return madeUp ? Readings::MadeUp : Readings::Measured;
}

QString documentsFolderFor(const QString& chosen, Readings readings) {
    if (!chosen.isEmpty()) return chosen;
    return readings == Readings::MadeUp ? platform::DocumentsFolder::simulatedPath()
                                        : platform::DocumentsFolder::standardPath();
}

QString settingsFileFor(const QString& chosen, const platform::DocumentsFolder& folder) {
    if (!chosen.isEmpty()) return chosen;
    const bool standard = folder.isSameAs(platform::DocumentsFolder::standardPath());
    return standard ? platform::UserDefaults::standardPath() : folder.filePath(QStringLiteral("kestrix.ini"));
}

std::string whyNotOurs(const platform::DocumentsFolder& folder) {
    return "database " + folder.filePath(QLatin1String(kDatabaseFile)).toStdString() +
           " is not one of Kestrix's; it is left as it is";
}

}  // namespace kestrix::storage
