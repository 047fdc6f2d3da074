#include "storage/FolderReadings.h"

#include <QFile>
#include <QFileInfo>

#include <optional>
#include <string>

#include "platform/UserDefaults.h"
#include "storage/ServiceDao.h"

namespace kestrix::storage {
namespace {

constexpr const char* kReadingsKey = "readings";
constexpr const char* kMeasured = "measured";
constexpr const char* kMadeUp = "madeUp";

QString noteIn(const platform::DocumentsFolder& folder) {
    return folder.filePath(QStringLiteral("kestrix.ini"));
}

// None: either may come.
std::optional<Readings> kindIn(const platform::DocumentsFolder& folder, const DatabaseLook& look) {
    if (look.readings) return look.readings;
    if (folder.isSameAs(platform::DocumentsFolder::standardPath())) return Readings::Measured;
    if (folder.isSameAs(platform::DocumentsFolder::simulatedPath())) return Readings::MadeUp;
    const QString noted = platform::UserDefaults(noteIn(folder), platform::UserDefaults::Start::LooksOnly)
                              .stringForKey(QLatin1String(kReadingsKey));
    if (noted == QLatin1String(kMadeUp)) return Readings::MadeUp;
    const bool recorded = look.owner != DatabaseLook::Owner::Locked &&
                          QFile::exists(folder.filePath(QLatin1String(kDatabaseFile)));
    return noted.isEmpty() && !recorded ? std::nullopt : std::optional(Readings::Measured);
}

bool mayBeWritten(const platform::DocumentsFolder& folder) {
    return QFileInfo(folder.path()).isWritable();  // otherwise the database says so
}

}  // namespace

std::string whyKeptOut(Readings readings, const platform::DocumentsFolder& folder, const DatabaseLook& look) {
    if (kindIn(folder, look).value_or(readings) == readings) return {};
    const std::string path = folder.path().toStdString();
    return readings == Readings::MadeUp
               ? path + " holds what was measured; made-up readings (simulator:, replay:) are not kept there"
               : path + " holds made-up readings; what a tester measures is not kept there";
}

void noteReadings(Readings readings, const platform::DocumentsFolder& folder) {
    if (!mayBeWritten(folder) || folder.isSameAs(platform::DocumentsFolder::standardPath())) return;
    platform::UserDefaults(noteIn(folder))
        .setString(QLatin1String(kReadingsKey),
                   QLatin1String(readings == Readings::MadeUp ? kMadeUp : kMeasured));
}

void markReadings(Readings readings, const platform::DocumentsFolder& folder, const DatabaseLook& look,
                  std::chrono::milliseconds patience) {
    if (!mayBeWritten(folder) || look.readings == readings) return;
    if (!QFile::exists(folder.filePath(QLatin1String(kDatabaseFile)))) return;
    ServiceDao(folder, patience)
        .execSql("PRAGMA application_id = " + std::to_string(applicationNumber(readings)));
}

}  // namespace kestrix::storage
