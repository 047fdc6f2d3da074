#include "storage/DatabaseLook.h"

#include <sqlite3.h>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "storage/Outcome.h"
#include "storage/ServiceDao.h"

namespace kestrix::storage {
namespace {

using Owner = DatabaseLook::Owner;

struct Mark {
    Readings readings;
    int number;
};

// "KXME" and "KXMU" in the file.
constexpr std::array kMarks{Mark{Readings::Measured, 0x4b58'4d45}, Mark{Readings::MadeUp, 0x4b58'4d55}};

// The number of the application, how many things the database defines, and how many of them are tables of
// ours. One statement: one lock to wait for.
constexpr const char* kLook =
    "SELECT (SELECT application_id FROM pragma_application_id), count(*), "
    "coalesce(sum(type = 'table' AND name IN ('measurefrom', 'recordfrom')), 0) "
    "FROM sqlite_master WHERE name NOT LIKE 'sqlite!_%' ESCAPE '!'";

// In a database's file.
constexpr std::string_view kFormat = "SQLite format 3";
constexpr std::size_t kNumberAt = 68;
constexpr std::size_t kHeaderSize = 72;

struct CloseLook {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};
using LookConnection = std::unique_ptr<sqlite3, CloseLook>;

struct EndLook {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

const Mark* markOf(int number) {
    const auto* const found = std::find_if(kMarks.begin(), kMarks.end(),
                                           [number](const Mark& mark) { return mark.number == number; });
    return found == kMarks.end() ? nullptr : found;
}

DatabaseLook lookOf(int number, int defined, int ours) {
    if (const Mark* const mark = markOf(number)) return {Owner::Ours, mark->readings, {}};
    const bool foreign = number != 0 || (defined > 0 && ours == 0);
    return {foreign ? Owner::Other : Owner::Ours, std::nullopt, {}};
}

DatabaseLook lookThrough(sqlite3* connection, const std::string& path) {
    sqlite3_stmt* made = nullptr;
    sqlite3_prepare_v2(connection, kLook, -1, &made, nullptr);
    const std::unique_ptr<sqlite3_stmt, EndLook> statement(made);
    if (made != nullptr && sqlite3_step(made) == SQLITE_ROW)
        return lookOf(sqlite3_column_int(made, 0), sqlite3_column_int(made, 1), sqlite3_column_int(made, 2));
    if ((sqlite3_errcode(connection) & 0xff) == SQLITE_BUSY)
        return {Owner::Locked, std::nullopt, failureOf(connection, path).reason};
    return {Owner::Unreadable, std::nullopt, {}};
}

// Whether it can only be read by who may write: a journal that was left must be rolled back first.
bool needsWriter(sqlite3* connection) {
    const int code = sqlite3_errcode(connection) & 0xff;
    return code == SQLITE_READONLY || code == SQLITE_CANTOPEN;
}

}  // namespace

DatabaseLook lookAtDatabase(const platform::DocumentsFolder& folder, std::chrono::milliseconds patience) {
    const QFileInfo file(folder.filePath(QLatin1String(kDatabaseFile)));
    if (!file.exists() || (file.isFile() && file.size() == 0)) return {};
    const std::string path = file.absoluteFilePath().toStdString();
    DatabaseLook look{Owner::Unreadable, std::nullopt, {}};
    for (const int flags : {SQLITE_OPEN_READONLY, SQLITE_OPEN_READWRITE}) {
        sqlite3* opened = nullptr;
        const int status = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
        const LookConnection connection(opened);
        if (opened == nullptr) return look;
        sqlite3_busy_timeout(opened, static_cast<int>(patience.count()));
        // What is in a log of another program's is left there.
        sqlite3_db_config(opened, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        if (status == SQLITE_OK) look = lookThrough(opened, path);
        if (look.owner != Owner::Unreadable || !needsWriter(opened)) return look;
    }
    return look;
}

int applicationNumber(Readings readings) {
    return readings == Readings::Measured ? kMarks[0].number : kMarks[1].number;
}

bool mayBeOurs(sqlite3* connection) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (file == nullptr || file->pMethods == nullptr) return false;
    sqlite3_int64 size = 0;
    if (file->pMethods->xFileSize(file, &size) != SQLITE_OK) return false;
    if (size == 0) return true;
    std::array<char, kHeaderSize> header{};
    if (file->pMethods->xRead(file, header.data(), static_cast<int>(header.size()), 0) != SQLITE_OK)
        return false;
    std::uint32_t number = 0;
    for (std::size_t i = kNumberAt; i < kHeaderSize; ++i)
        number = number << 8U | static_cast<std::uint8_t>(header[i]);
    return std::string_view(header.data(), kFormat.size()) == kFormat &&
           (number == 0 || markOf(static_cast<int>(number)) != nullptr);
}

}  // namespace kestrix::storage
