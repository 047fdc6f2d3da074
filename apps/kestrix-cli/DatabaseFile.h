#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "storage/PreparedStatement.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kestrix::cli {

// A database of Kestrix, open for reading only. Whatever is in the file, a problem is one line of text.
class DatabaseFile {
  public:
    explicit DatabaseFile(std::string path);

    // Why it cannot be read; empty: it can.
    const std::string& problem() const { return problem_; }
    // What is read in one call belongs together, whatever is written meanwhile; who wants to write waits for
    // its end. `read` answers false when the connection failed. False, and the problem, if it did.
    bool readTogether(const std::function<bool()>& read);
    // It cannot be read after all: as the connection has just answered, or for this reason.
    void spoil() { problem_ = failure(); }
    void spoil(std::string problem) { problem_ = std::move(problem); }

    sqlite3* connection() const { return connection_.get(); }
    // Null when it cannot be prepared.
    storage::Prepared prepare(const char* sql) const;

  private:
    struct CloseConnection {
        void operator()(sqlite3* connection) const;
    };

    void checkTables();
    std::string failure() const;

    std::string path_;
    std::unique_ptr<sqlite3, CloseConnection> connection_;
    std::string problem_;
};

}  // namespace kestrix::cli
