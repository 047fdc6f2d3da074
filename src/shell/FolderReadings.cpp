#include "shell/FolderReadings.h"

#include <QFile>
#include <QFileInfo>

#include <optional>

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

// None: either may come.
std::optional<Readings> kindOf(const platform::DocumentsFolder& folder) {
    if (const auto marked = storage::markedReadings(folder)) return marked;
    if (folder.isSameAs(platform::DocumentsFolder::standardPath())) return Readings::Measured;
    if (folder.isSameAs(platform::DocumentsFolder::simulatedPath())) return Readings::MadeUp;
    const QString noted = platform::UserDefaults(noteIn(folder), platform::UserDefaults::Start::LooksOnly)
                              .stringForKey(QLatin1String(kKey));
    if (noted == QLatin1String(kMadeUp)) return Readings::MadeUp;
    const bool recorded = QFile::exists(folder.filePath(QLatin1String(storage::kDatabaseFile)));
    return noted.isEmpty() && !recorded ? std::nullopt : std::optional(Readings::Measured);
}

}  // namespace

std::string whyKeptOut(Readings readings, const platform::DocumentsFolder& folder) {
    if (kindOf(folder).value_or(readings) == readings) return {};
    const std::string path = folder.path().toStdString();
    return readings == Readings::MadeUp
               ? path + " holds what was measured; made-up readings (simulator:, replay:) are not kept there"
               : path + " holds made-up readings; what a tester measures is not kept there";
}

void noteReadings(Readings readings, const platform::DocumentsFolder& folder) {
    if (!QFileInfo(folder.path()).isWritable()) return;  // the database says so
    if (!folder.isSameAs(platform::DocumentsFolder::standardPath()))
        platform::UserDefaults(noteIn(folder))
            .setString(QLatin1String(kKey),
                       QLatin1String(readings == Readings::MadeUp ? kMadeUp : kMeasured));
    storage::markReadings(readings, folder);
}

}  // namespace kestrix::shell
