#pragma once

#include <string>

struct sqlite3;

namespace kestrix::cli {

// Whether the tables measurefrom and, where it is there, evidence are as this version makes them: `why` is
// empty then, and one line otherwise. False: the connection failed.
bool whyNotOurTables(sqlite3* connection, std::string& why);

// Whether the indexes, by which records and unsaved measurements are found, name each row once, and whatever
// else the engine knows to look at in our two given tables: `why` is empty then, and one line otherwise.
// False: the connection failed.
bool whyNotFound(sqlite3* connection, std::string& why);

}  // namespace kestrix::cli
