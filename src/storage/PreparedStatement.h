#pragma once

#include <cstdint>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace kestrix::storage {

struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const;
};
// Goes before its connection does.
using Prepared = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// Null when the text is null or cannot be prepared: the connection tells why.
Prepared prepare(sqlite3* connection, const char* sql);

struct ResetStatement {
    void operator()(sqlite3_stmt* statement) const;
};
// One that is kept for the next time holds no lock until then.
using InUse = std::unique_ptr<sqlite3_stmt, ResetStatement>;

// The first column of the first row; 0 without one. False: it could not be read.
bool readNumber(sqlite3* connection, const char* sql, std::int64_t& number);

}  // namespace kestrix::storage
