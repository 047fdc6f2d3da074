#include "shell/FolderReadings.h"

#include <QFile>
#include <QFileInfo>

#include "platform/UserDefaults.h"
#include "storage/ServiceDao.h"

namespace kestrix::shell {
namespace {

constexpr const char* kKey = "readings";
constexpr const char* kMeasured = "measured";
constexpr const char* kMadeUp = "madeUp";

QString noteIn(const platform::DocumentsFolder& folder) {
    return folder.filePath(QStringLiteral("kestrix.ini"));
}

// Empty: either may come.
QString kindOf(const platform::DocumentsFolder& folder) {
    if (folder.isSameAs(platform::DocumentsFolder::standardPath())) return QLatin1String(kMeasured);
    if (folder.isSameAs(platform::DocumentsFolder::simulatedPath())) return QLatin1String(kMadeUp);
    const QString noted = platform::UserDefaults(noteIn(folder)).stringForKey(QLatin1String(kKey));
    const bool recorded = QFile::exists(folder.filePath(QLatin1String(storage::kDatabaseFile)));
    return noted.isEmpty() && recorded ? QLatin1String(kMeasured) : noted;
}

}  // namespace

std::string whyKeptOut(Readings readings, const platform::DocumentsFolder& folder) {
    const QString kind = kindOf(folder);
    if (kind.isEmpty()) return {};
    const std::string path = folder.path().toStdString();
    if (readings == Readings::MadeUp && kind != QLatin1String(kMadeUp))
        return path + " holds what was measured; made-up readings (simulator:, replay:) are not kept there";
    if (readings == Readings::Measured && kind != QLatin1String(kMeasured))
        return path + " holds made-up readings; what a tester measures is not kept there";
    return {};
}

void noteReadings(Readings readings, const platform::DocumentsFolder& folder) {
    if (folder.isSameAs(platform::DocumentsFolder::standardPath())) return;
    if (!QFileInfo(folder.path()).isWritable()) return;  // the database says so
    platform::UserDefaults(noteIn(folder))
        .setString(QLatin1String(kKey), QLatin1String(readings == Readings::MadeUp ? kMadeUp : kMeasured));
}

}  // namespace kestrix::shell
