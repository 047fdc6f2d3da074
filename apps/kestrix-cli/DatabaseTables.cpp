#include "apps/kestrix-cli/DatabaseTables.h"

#include <fmt/core.h>
#include <sqlite3.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "storage/PreparedStatement.h"

namespace kestrix::cli {
namespace {

using storage::prepare;
using storage::Prepared;

struct Table {
    const char* name;
    const char* columns;  // as kColumns tells them
};
constexpr Table kMeasures{
    "measurefrom",
    "dataId INTEGER,recordId INTEGER,dataName varchar(30),function varchar(30),parameters varchar(30),"
    "result varchar(30),dateTime varchar(30),comments varchar(30),recordName varchar(30),"};
constexpr Table kEvidence{
    "evidence",
    "place INTEGER,event TEXT,identity TEXT,dataId INTEGER,measurement BLOB,frame BLOB,tripTimes BLOB,"
    "equalFrames INTEGER,source TEXT,accessory TEXT,origin TEXT,utc INTEGER,utcOffset INTEGER,"
    "sinceBoot INTEGER,program TEXT,previous BLOB,hash BLOB,"};

// A column that is worked out from others is none of ours: it says so in `hidden`.
constexpr const char* kColumns =
    "SELECT name || ' ' || type || iif(hidden, ' hidden', '') FROM pragma_table_xinfo(?) ORDER BY cid";
// Whether it is defined as the database itself defines one. It works with a name of another kind, too.
constexpr const char* kIsDefined =
    "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = ?1 AND tbl_name = ?1 AND "
    "typeof(rootpage) = 'integer' AND typeof(sql) = 'text'";
constexpr const char* kIntegrity[] = {"PRAGMA integrity_check(measurefrom)",
                                      "PRAGMA integrity_check(recordfrom)"};
// Reads each number that an index leads to, which that check does not do. Without the index it is no
// statement.
constexpr const char* kIndexed[] = {
    "SELECT total(dataId) FROM measurefrom INDEXED BY measurefrom_recordId",
    "SELECT total(dataId) FROM measurefrom INDEXED BY measurefrom_unsaved WHERE recordName = ''"};
// How many things the database defines, and how many of them are tables of ours.
constexpr const char* kDefined =
    "SELECT count(*), coalesce(sum(type = 'table' AND name IN ('measurefrom', 'recordfrom', 'evidence')), 0) "
    "FROM sqlite_master WHERE name NOT LIKE 'sqlite!_%' ESCAPE '!'";

bool readColumns(sqlite3* connection, const Table& table, std::string& columns) {
    const Prepared all = prepare(connection, kColumns);
    if (!all) return false;
    sqlite3_bind_text(all.get(), 1, table.name, -1, SQLITE_STATIC);
    int status = SQLITE_ROW;
    while ((status = sqlite3_step(all.get())) == SQLITE_ROW) {
        if (const void* name = sqlite3_column_text(all.get(), 0)) columns += static_cast<const char*>(name);
        columns += ',';
    }
    return status == SQLITE_DONE;
}

bool readIsDefined(sqlite3* connection, const Table& table, bool& defined) {
    const Prepared look = prepare(connection, kIsDefined);
    if (!look) return false;
    sqlite3_bind_text(look.get(), 1, table.name, -1, SQLITE_STATIC);
    if (sqlite3_step(look.get()) != SQLITE_ROW) return false;
    defined = sqlite3_column_int(look.get(), 0) == 1;
    return true;
}

// Whether its first column numbers the rows, and the database never gives a number again. Of a view, or of a
// table that another program makes, it does not.
bool isNumbered(sqlite3* connection, const Table& table) {
    const std::string_view columns = table.columns;
    const std::string first(columns.substr(0, columns.find(' ')));
    int numbered = 0;
    return sqlite3_table_column_metadata(connection, "main", table.name, first.c_str(), nullptr, nullptr,
                                         nullptr, nullptr, &numbered) == SQLITE_OK &&
           numbered != 0;
}

bool readDefined(sqlite3* connection, int& defined, int& ours) {
    const Prepared look = prepare(connection, kDefined);
    if (!look || sqlite3_step(look.get()) != SQLITE_ROW) return false;
    defined = sqlite3_column_int(look.get(), 0);
    ours = sqlite3_column_int(look.get(), 1);
    return true;
}

}  // namespace

bool whyNotOurTables(sqlite3* connection, std::string& why) {
    int defined = 0;
    int ours = 0;
    if (!readDefined(connection, defined, ours)) return false;
    if (defined == 0) {
        why = "there is nothing in its database";
    } else if (ours == 0) {
        why = "it is no database of Kestrix";
    }
    for (const Table& table : {kMeasures, kEvidence}) {
        if (!why.empty()) return true;
        std::string columns;
        bool isDefined = false;
        if (!readColumns(connection, table, columns) || !readIsDefined(connection, table, isDefined))
            return false;
        if (columns.empty() && table.name == kEvidence.name) continue;
        if (columns.empty()) {
            why = fmt::format("the database has no table {}", table.name);
        } else if (columns != table.columns || !isDefined || !isNumbered(connection, table)) {
            why = fmt::format(
                "the table {} of the database is not as this version makes it: a newer version's, or altered",
                table.name);
        }
    }
    return true;
}

bool whyNotFound(sqlite3* connection, std::string& why) {
    for (const char* const sql : kIntegrity) {
        const Prepared check = prepare(connection, sql);
        // Of a table that is not there it says so, as an error.
        if (!check) continue;
        if (sqlite3_step(check.get()) != SQLITE_ROW) return false;
        const void* const told = sqlite3_column_text(check.get(), 0);
        const std::string_view first = told != nullptr ? static_cast<const char*>(told) : "";
        if (first != "ok") why = fmt::format("the database is damaged: {}", first);
    }
    return std::all_of(std::begin(kIndexed), std::end(kIndexed), [connection](const char* sql) {
        const Prepared all = prepare(connection, sql);
        return !all || sqlite3_step(all.get()) == SQLITE_ROW;
    });
}

}  // namespace kestrix::cli
