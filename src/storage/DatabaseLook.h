#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "platform/DocumentsFolder.h"

struct sqlite3;

namespace kestrix::storage {

// Whether a tester measured them.
enum class Readings { Measured, MadeUp };

// What a look at the folder's database told.
struct DatabaseLook {
    enum class Owner {
        Nobody,      // no file, or one without content
        Ours,        // or nobody's so far: a database without mark and tables
        Other,       // another program's
        Locked,      // another program holds it: nobody could look
        Unreadable,  // no database, a damaged one, or one that may not be read
    };
    Owner owner = Owner::Nobody;
    // The kind of readings that it says it holds, in the number that SQLite keeps for the application (PRAGMA
    // application_id). None: it does not say.
    std::optional<Readings> readings;
    // Why nobody could look, in words. Empty unless it is locked.
    std::string reason;
};

// Makes no file and changes none, but for a journal that a killed process left: it is rolled back, as nothing
// can be read before. patience: how long a lock of another program is waited for.
DatabaseLook lookAtDatabase(const platform::DocumentsFolder& folder, std::chrono::milliseconds patience);

// The number by which a database of that kind is known.
int applicationNumber(Readings readings);

// Whether the open file is empty, or a database whose number is ours or nobody's. Takes no lock.
bool mayBeOurs(sqlite3* connection);

}  // namespace kestrix::storage
