#pragma once

#include <memory>
#include <string>

#include "storage/Outcome.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kestrix::cli {

struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const;
};
using DatabaseStatement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// A database of Kestrix, open for reading only. All that is read from it belongs together, whatever a window
// records meanwhile.
class DatabaseFile {
  public:
    explicit DatabaseFile(std::string path);

    // Why it cannot be read, in one line; empty: it can.
    const std::string& problem() const { return problem_; }
    // The failure that the connection answered last.
    std::string failure() const { return storage::failureOf(connection_.get(), path_).reason; }
    sqlite3* connection() const { return connection_.get(); }
    // Null when it cannot be prepared.
    DatabaseStatement prepare(const char* sql) const;

  private:
    struct CloseConnection {
        void operator()(sqlite3* connection) const;
    };

    std::string path_;
    std::unique_ptr<sqlite3, CloseConnection> connection_;
    std::string problem_;
};

}  // namespace kestrix::cli
