#include "storage/PreparedStatement.h"

#include <sqlite3.h>

namespace kestrix::storage {

void FinalizeStatement::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

void ResetStatement::operator()(sqlite3_stmt* statement) const {
    sqlite3_reset(statement);
}

Prepared prepare(sqlite3* connection, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sql != nullptr) sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr);
    return Prepared(statement);
}

bool readNumber(sqlite3* connection, const char* sql, std::int64_t& number) {
    number = 0;
    const Prepared statement = prepare(connection, sql);
    const int status = statement ? sqlite3_step(statement.get()) : SQLITE_ERROR;
    if (status == SQLITE_ROW) number = sqlite3_column_int64(statement.get(), 0);
    return status == SQLITE_ROW || status == SQLITE_DONE;
}

}  // namespace kestrix::storage
