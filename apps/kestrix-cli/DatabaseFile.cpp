#include "apps/kestrix-cli/DatabaseFile.h"

#include <sqlite3.h>
#include <unistd.h>

#include <utility>

#include "apps/common/PrintableText.h"
#include "apps/kestrix-cli/DatabaseTables.h"
#include "storage/DatabaseLook.h"
#include "storage/Outcome.h"

namespace kestrix::cli {
namespace {

constexpr int kLockPatience = 5000;  // milliseconds, with a lock of another program

constexpr const char* kLeftJournal =
    "a process was killed while it wrote: the next start of kestrix, or any command that writes, undoes what "
    "it left half done";

// Whether it counts stands in it.
std::string whyJournalIsNotRead(const std::string& path) {
    const std::string journal = path + "-journal";
    if (access(journal.c_str(), R_OK) == 0) return {};
    return app::printable("its journal may not be read by this user: " + journal);
}

}  // namespace

void DatabaseFile::CloseConnection::operator()(sqlite3* connection) const {
    sqlite3_close(connection);
}

DatabaseFile::DatabaseFile(std::string path) : path_(std::move(path)) {
    sqlite3* opened = nullptr;
    const int status = sqlite3_open_v2(path_.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
    connection_.reset(opened);
    if (status != SQLITE_OK) {
        problem_ = failure();
        return;
    }
    sqlite3_busy_timeout(opened, kLockPatience);
    if (!storage::mayBeOurs(opened)) {
        problem_ = "it is no database of Kestrix";
        return;
    }
    checkTables();
}

void DatabaseFile::checkTables() {
    std::string why;
    if (readTogether([&] { return whyNotOurTables(connection(), why); })) problem_ = why;
}

bool DatabaseFile::readTogether(const std::function<bool()>& read) {
    if (!problem_.empty()) return false;
    const bool done = sqlite3_exec(connection(), "BEGIN", nullptr, nullptr, nullptr) == SQLITE_OK && read();
    if (!done && problem_.empty()) problem_ = failure();
    sqlite3_exec(connection(), "ROLLBACK", nullptr, nullptr, nullptr);
    return problem_.empty();
}

// An object's name in it may be anything.
std::string DatabaseFile::failure() const {
    if (sqlite3_extended_errcode(connection()) == SQLITE_READONLY_ROLLBACK) {
        const std::string why = whyJournalIsNotRead(path_);
        return why.empty() ? kLeftJournal : why;
    }
    return app::printable(storage::failureOf(connection(), path_).reason);
}

storage::Prepared DatabaseFile::prepare(const char* sql) const {
    return storage::prepare(connection(), sql);
}

}  // namespace kestrix::cli
