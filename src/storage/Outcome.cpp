#include "storage/Outcome.h"

#include <sqlite3.h>
#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

namespace kestrix::storage {
namespace {

constexpr const char* kContext = "Outcome";

// What the operating system answered decides, where it answered; then what SQLite did. 0 stands for any.
struct Reason {
    int code;  // SQLite's, without its details
    int systemError;
    const char* text;  // %1 is the folder
};

constexpr const char* kDiskFull = QT_TRANSLATE_NOOP("Outcome", "the disk is full");
constexpr const char* kNoRight =
    QT_TRANSLATE_NOOP("Outcome", "the folder %1 may not be written by this user");
constexpr const char* kReadOnly =
    QT_TRANSLATE_NOOP("Outcome", "the folder %1 or the database in it is read-only");
constexpr const char* kDamaged = QT_TRANSLATE_NOOP("Outcome", "the database in %1 is damaged");
constexpr const char* kLocked = QT_TRANSLATE_NOOP("Outcome", "another program holds the database");

constexpr std::array kReasons{
    Reason{SQLITE_FULL, 0, kDiskFull},
    Reason{SQLITE_IOERR, ENOSPC, kDiskFull},
    Reason{SQLITE_IOERR, EDQUOT, kDiskFull},
    Reason{SQLITE_IOERR, EFBIG, kDiskFull},
    Reason{SQLITE_CANTOPEN, ENOSPC, kDiskFull},
    Reason{SQLITE_CANTOPEN, EDQUOT, kDiskFull},
    Reason{SQLITE_CANTOPEN, EACCES, kNoRight},
    Reason{SQLITE_CANTOPEN, EPERM, kNoRight},
    Reason{SQLITE_PERM, 0, kNoRight},
    Reason{SQLITE_CANTOPEN, EROFS, kReadOnly},
    Reason{SQLITE_READONLY, 0, kReadOnly},
    Reason{SQLITE_BUSY, 0, kLocked},
    Reason{SQLITE_LOCKED, 0, kLocked},
    Reason{SQLITE_CORRUPT, 0, kDamaged},
    Reason{SQLITE_NOTADB, 0, kDamaged},
    Reason{SQLITE_CANTOPEN, 0, QT_TRANSLATE_NOOP("Outcome", "the database in %1 cannot be opened")},
    Reason{SQLITE_IOERR, 0, QT_TRANSLATE_NOOP("Outcome", "the disk reports an error")},
    Reason{SQLITE_TOOBIG, 0, QT_TRANSLATE_NOOP("Outcome", "a text is too long")},
};

constexpr const char* kNoFolder = QT_TRANSLATE_NOOP("Outcome", "there is no folder %1");
constexpr const char* kNoTables = QT_TRANSLATE_NOOP("Outcome", "the database in %1 has no tables");
constexpr const char* kUnknown = QT_TRANSLATE_NOOP("Outcome", "the database does not take it");

const char* reasonOf(int code, int systemError, std::string_view text, const QFileInfo& folder) {
    if (code == SQLITE_CANTOPEN && !folder.isDir()) return kNoFolder;
    if (text.starts_with("no such table")) return kNoTables;
    const auto found = std::find_if(kReasons.begin(), kReasons.end(), [&](const Reason& reason) {
        return reason.code == code && (reason.systemError == 0 || reason.systemError == systemError);
    });
    return found != kReasons.end() ? found->text : kUnknown;
}

}  // namespace

Outcome failureOf(sqlite3* connection, const std::string& path) {
    const int code = connection == nullptr ? SQLITE_NOMEM : sqlite3_errcode(connection) & 0xff;
    const int systemError = connection == nullptr ? 0 : sqlite3_system_errno(connection);
    const QString own =
        QString::fromUtf8(connection == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(connection));
    const QFileInfo folder(QFileInfo(QString::fromStdString(path)).absolutePath());
    const char* const reason = reasonOf(code, systemError, own.toStdString(), folder);
    const QString words =
        QCoreApplication::translate(kContext, reason).replace(QLatin1String("%1"), folder.filePath());
    return {false, words.toStdString() + " (" + own.toStdString() + ")", 0};
}

Outcome failure(const char* reason) {
    return {false, QCoreApplication::translate(kContext, reason).toStdString(), 0};
}

Outcome recordIsGone() {
    return failure(QT_TRANSLATE_NOOP("Outcome", "the test record is no longer there"));
}

}  // namespace kestrix::storage
