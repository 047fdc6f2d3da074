#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

namespace kestrix::storage {

// A second way to the database, past the class under test. A failing statement fails the test.
class Connection {
  public:
    explicit Connection(const std::string& path);

    void run(const std::string& sql);
    // Rows of columns as texts; NULL is "NULL".
    std::vector<std::vector<std::string>> rows(const std::string& sql);
    // The first column of the first row.
    std::string value(const std::string& sql);

  private:
    struct Close {
        void operator()(sqlite3* connection) const { sqlite3_close(connection); }
    };
    std::unique_ptr<sqlite3, Close> db_;
};

// While it lives, the texts of the statements that connections opened since run. One at a time.
class StatementTrace {
  public:
    StatementTrace();
    StatementTrace(const StatementTrace&) = delete;
    StatementTrace& operator=(const StatementTrace&) = delete;
    ~StatementTrace();

    // Those since the last call, without PRAGMAs.
    std::vector<std::string> take();
};

}  // namespace kestrix::storage
