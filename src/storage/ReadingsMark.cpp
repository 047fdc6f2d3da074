#include "storage/ReadingsMark.h"

#include <sqlite3.h>
#include <QFile>

#include <array>
#include <memory>
#include <string>

#include "storage/ServiceDao.h"

namespace kestrix::storage {
namespace {

struct Mark {
    Readings readings;
    int number;
};

// "KXME" and "KXMU" in the file.
constexpr std::array kMarks{Mark{Readings::Measured, 0x4b58'4d45}, Mark{Readings::MadeUp, 0x4b58'4d55}};

constexpr int kPatience = 5000;  // milliseconds that a lock is waited for

struct CloseConnection {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};

int takeNumber(void* number, int, char** values, char**) {
    *static_cast<std::string*>(number) = values[0] != nullptr ? values[0] : "";
    return 0;
}

}  // namespace

// Not read-only: a journal that a killed process left must be rolled back before anything can be read.
std::optional<Readings> markedReadings(const platform::DocumentsFolder& folder) {
    const QByteArray path = QFile::encodeName(folder.filePath(QLatin1String(kDatabaseFile)));
    sqlite3* opened = nullptr;
    const int status = sqlite3_open_v2(path.constData(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    const std::unique_ptr<sqlite3, CloseConnection> connection(opened);
    if (status != SQLITE_OK) return std::nullopt;
    sqlite3_busy_timeout(opened, kPatience);
    std::string number;
    sqlite3_exec(opened, "PRAGMA application_id", takeNumber, &number, nullptr);
    for (const Mark& mark : kMarks) {
        if (number == std::to_string(mark.number)) return mark.readings;
    }
    return std::nullopt;
}

void markReadings(Readings readings, const platform::DocumentsFolder& folder) {
    if (!QFile::exists(folder.filePath(QLatin1String(kDatabaseFile)))) return;
    if (markedReadings(folder) == readings) return;
    for (const Mark& mark : kMarks) {
        if (mark.readings == readings)
            ServiceDao(folder).execSql("PRAGMA application_id = " + std::to_string(mark.number));
    }
}

}  // namespace kestrix::storage
