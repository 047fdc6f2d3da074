#include "storage/Transaction.h"

#include <sqlite3.h>

namespace kestrix::storage {

Transaction::Transaction(ServiceDao& dao) : dao_(dao) {
    // Before it waits for the lock: what is stored in it was done now.
    dao_.moment_ = dao_.clock_();
    dao_.run("BEGIN IMMEDIATE");
    dao_.inTransaction_ = true;
}

Transaction::~Transaction() {
    end();
}

bool Transaction::commit() {
    const bool done = dao_.outcome_.done && dao_.run("COMMIT");
    end();
    return done;
}

// Undoes what is still open, and leaves the outcome as it is.
void Transaction::end() {
    if (!dao_.inTransaction_) return;
    dao_.inTransaction_ = false;
    sqlite3* const open = dao_.db_.get();
    if (open == nullptr || sqlite3_get_autocommit(open) != 0) return;
    dao_.chain_.reset();  // its table may be undone
    if (sqlite3_exec(open, "ROLLBACK", nullptr, nullptr, nullptr) != SQLITE_OK) dao_.closeConnection();
}

}  // namespace kestrix::storage
