#include "apps/kestrix-cli/DatabaseFile.h"

#include <sqlite3.h>

#include <utility>

#include "storage/DatabaseLook.h"

namespace kestrix::cli {
namespace {

constexpr int kPatience = 5000;  // milliseconds, with a lock of another program

}  // namespace

void FinalizeStatement::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

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
    sqlite3_busy_timeout(opened, kPatience);
    if (!storage::mayBeOurs(opened)) {
        problem_ = "it is no database of Kestrix";
    } else if (sqlite3_exec(opened, "BEGIN", nullptr, nullptr, nullptr) != SQLITE_OK) {
        problem_ = failure();
    }
}

DatabaseStatement DatabaseFile::prepare(const char* sql) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(connection_.get(), sql, -1, &statement, nullptr);
    return DatabaseStatement(statement);
}

}  // namespace kestrix::cli
