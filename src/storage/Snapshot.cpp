#include "storage/Snapshot.h"

#include <sqlite3.h>

namespace kestrix::storage {

Snapshot::Snapshot(ServiceDao& dao) : dao_(dao) {
    sqlite3* const open = dao_.connection();
    if (open == nullptr) {
        outcome_ = dao_.outcome_;
    } else if (sqlite3_exec(open, "BEGIN", nullptr, nullptr, nullptr) != SQLITE_OK) {
        outcome_ = failureOf(open, dao_.path_);
    }
}

// Of a connection that was opened anew meanwhile there is none to end.
Snapshot::~Snapshot() {
    sqlite3* const open = dao_.db_.get();
    if (open != nullptr && sqlite3_get_autocommit(open) == 0)
        sqlite3_exec(open, "COMMIT", nullptr, nullptr, nullptr);
}

}  // namespace kestrix::storage
