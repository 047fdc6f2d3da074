#include "storage/EvidenceChain.h"

#include <sqlite3.h>

#include <limits>
#include <string>

#include "storage/EvidenceColumns.h"
#include "storage/EvidenceHash.h"

namespace kestrix::storage {
namespace {

constexpr const char* kCreate =
    "CREATE TABLE IF NOT EXISTS evidence (place INTEGER PRIMARY KEY AUTOINCREMENT, event TEXT, identity TEXT,"
    " dataId INTEGER, measurement BLOB, frame BLOB, tripTimes BLOB, equalFrames INTEGER, source TEXT,"
    " accessory TEXT, origin TEXT, utc INTEGER, utcOffset INTEGER, sinceBoot INTEGER, program TEXT,"
    " previous BLOB, hash BLOB)";
constexpr const char* kAppend =
    "INSERT INTO evidence (place, event, identity, dataId, measurement, frame, tripTimes, equalFrames,"
    " source, accessory, origin, utc, utcOffset, sinceBoot, program, previous, hash)"
    " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";
constexpr const char* kLastPlace = "SELECT seq FROM sqlite_sequence WHERE name = 'evidence'";
// The last place that was ever given, and the hash of the last row; NULL without one.
constexpr const char* kLast =
    "SELECT max(coalesce(CAST((SELECT seq FROM sqlite_sequence WHERE name = 'evidence') AS INTEGER), 0),"
    " coalesce((SELECT max(place) FROM evidence), 0)),"
    " (SELECT hash FROM evidence ORDER BY place DESC LIMIT 1)";
constexpr const char* kHead = "SELECT place, hash FROM evidence ORDER BY place DESC LIMIT 1";
constexpr const char* kFrom = "SELECT * FROM evidence WHERE place >= ? ORDER BY place";
constexpr const char* kHasTable =
    "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = 'evidence'";
constexpr const char* kDueFrom = "PRAGMA user_version";
constexpr const char* kFirstRecorded =
    "SELECT dataId FROM evidence WHERE event = 'recorded' ORDER BY place LIMIT 1";
constexpr const char* kLastMeasurement =
    "SELECT min(seq, 2147483647) FROM sqlite_sequence WHERE name = 'measurefrom'";

// With the first row, or the first one since the database does. The number stays when the table is taken
// away.
bool rememberDueFrom(sqlite3* connection, const EvidenceRow& next) {
    std::int64_t due = 0;
    if (!readDueFrom(connection, due)) return false;
    if (due != 0) return true;
    if (!readNumber(connection, kFirstRecorded, due)) return false;
    if (due == 0 && next.event == EvidenceEvent::Recorded) due = next.dataId;
    if (due == 0) {
        if (!readNumber(connection, kLastMeasurement, due)) return false;
        ++due;
    }
    if (static_cast<std::int32_t>(due) != due) return true;
    const std::string remember = kDueFrom + std::string(" = ") + std::to_string(due);
    return sqlite3_exec(connection, remember.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace

// The table as well, where it is missing.
bool EvidenceChain::prepare(const EvidenceRow& next) {
    if (last_ && insert_) return true;
    if (sqlite3_exec(connection_, kCreate, nullptr, nullptr, nullptr) != SQLITE_OK ||
        !rememberDueFrom(connection_, next))
        return false;
    last_ = storage::prepare(connection_, kLast);
    insert_ = storage::prepare(connection_, kAppend);
    return last_ && insert_;
}

// The place behind the last that was ever given: where the end of the chain was taken away, it stays to be
// seen. Whatever was done to that count, the row gets a place of its own, or none behind the last possible.
bool EvidenceChain::follow(EvidenceRow& row) {
    const InUse last(last_.get());
    if (sqlite3_step(last.get()) != SQLITE_ROW) return false;
    row.place = sqlite3_column_int64(last.get(), 0);
    if (row.place < std::numeric_limits<std::int64_t>::max()) ++row.place;
    row.previous = readSha256(last.get(), 1);
    return true;
}

bool EvidenceChain::append(EvidenceRow& row) {
    if (!prepare(row) || !follow(row)) return false;
    row.hash = hashOf(row);
    const InUse insert(insert_.get());
    const std::string tripTimes = packedTripTimes(row.evidence);
    bindEvidence(insert.get(), row, tripTimes);
    // Reset it tells the same failure once more.
    return sqlite3_step(insert.get()) == SQLITE_DONE;
}

bool hasEvidence(sqlite3* connection, bool& has) {
    std::int64_t count = 0;
    const bool read = readNumber(connection, kHasTable, count);
    has = count > 0;
    return read;
}

bool readLastPlace(sqlite3* connection, std::int64_t& place) {
    return readNumber(connection, kLastPlace, place);
}

bool readDueFrom(sqlite3* connection, std::int64_t& dataId) {
    return readNumber(connection, kDueFrom, dataId);
}

bool readHead(sqlite3* connection, ChainHead& head) {
    head = {};
    bool has = false;
    if (!hasEvidence(connection, has)) return false;
    if (!has) return true;
    const Prepared last = storage::prepare(connection, kHead);
    const int status = last ? sqlite3_step(last.get()) : SQLITE_ERROR;
    if (status == SQLITE_ROW) head = {sqlite3_column_int64(last.get(), 0), readSha256(last.get(), 1)};
    return status == SQLITE_ROW || status == SQLITE_DONE;
}

bool eachEvidence(sqlite3* connection, std::int64_t from, const EvidenceVisitor& visit) {
    bool has = false;
    if (!hasEvidence(connection, has)) return false;
    if (!has) return true;
    const Prepared all = prepare(connection, kFrom);
    sqlite3_bind_int64(all.get(), 1, from);
    int status = all ? SQLITE_ROW : SQLITE_ERROR;
    while (all && (status = sqlite3_step(all.get())) == SQLITE_ROW) {
        EvidenceRow row;
        const bool readable = readEvidence(all.get(), row);
        if (!visit(row, readable)) return true;
    }
    return status == SQLITE_DONE;
}

}  // namespace kestrix::storage
