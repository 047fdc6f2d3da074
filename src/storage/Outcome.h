#pragma once

#include <cstdint>
#include <string>

struct sqlite3;

namespace kestrix::storage {

// What came of an operation on the database.
struct Outcome {
    bool done = true;
    // Why not, as the end of a sentence ("the disk is full (database or disk is full)"): in words for the
    // user, with the database's own behind them. Empty when it is done.
    std::string reason;
    // The identity that the database gave to an inserted row; 0 when the operation inserted none.
    std::int64_t identity = 0;

    bool operator==(const Outcome&) const = default;
};

// The failure that the connection answered last. path: the database file. connection: none when there was no
// memory for one.
Outcome failureOf(sqlite3* connection, const std::string& path);
// A failure of ours.
Outcome failure(const char* reason);
// The one for a test record that somebody deleted.
Outcome recordIsGone();

}  // namespace kestrix::storage
