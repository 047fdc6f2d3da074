#include "tests/storage/Connection.h"

#include <gtest/gtest.h>

#include <utility>

namespace kestrix::storage {
namespace {

std::vector<std::string>& traced() {
    static std::vector<std::string> texts;
    return texts;
}

int keep(unsigned, void*, void*, void* text) {
    const std::string sql = static_cast<const char*>(text);
    if (!sql.starts_with("PRAGMA")) traced().push_back(sql);
    return 0;
}

int traceConnection(sqlite3* connection, char**, const void*) {
    return sqlite3_trace_v2(connection, SQLITE_TRACE_STMT, keep, nullptr);
}

void (*entryPoint())() {
    return reinterpret_cast<void (*)()>(traceConnection);
}

}  // namespace

Connection::Connection(const std::string& path) {
    sqlite3* opened = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &opened), SQLITE_OK) << path;
    db_.reset(opened);
}

void Connection::run(const std::string& sql) {
    EXPECT_EQ(sqlite3_exec(db_.get(), sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(db_.get());
}

std::vector<std::vector<std::string>> Connection::rows(const std::string& sql) {
    std::vector<std::vector<std::string>> all;
    const auto addRow = [](void* to, int count, char** columns, char**) {
        auto& row = static_cast<std::vector<std::vector<std::string>>*>(to)->emplace_back();
        for (int i = 0; i < count; ++i) row.emplace_back(columns[i] == nullptr ? "NULL" : columns[i]);
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(db_.get(), sql.c_str(), addRow, &all, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(db_.get());
    return all;
}

std::string Connection::value(const std::string& sql) {
    const auto all = rows(sql);
    return all.empty() || all.front().empty() ? "" : all.front().front();
}

StatementTrace::StatementTrace() {
    traced().clear();
    sqlite3_auto_extension(entryPoint());
}

StatementTrace::~StatementTrace() {
    sqlite3_cancel_auto_extension(entryPoint());
}

std::vector<std::string> StatementTrace::take() {
    return std::exchange(traced(), {});
}

}  // namespace kestrix::storage
