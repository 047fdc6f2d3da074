#include "storage/EvidenceChain.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "storage/EvidenceHash.h"

namespace kestrix::storage {
namespace {

struct Finalized {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Prepared = std::unique_ptr<sqlite3_stmt, Finalized>;

constexpr const char* kCreate =
    "CREATE TABLE IF NOT EXISTS evidence (place INTEGER PRIMARY KEY AUTOINCREMENT, event TEXT, identity "
    "TEXT, "
    "dataId INTEGER, measurement BLOB, frame BLOB, tripTimes BLOB, equalFrames INTEGER, source TEXT, "
    "accessory "
    "TEXT, origin TEXT, utc INTEGER, utcOffset INTEGER, sinceBoot INTEGER, program TEXT, previous BLOB, hash "
    "BLOB)";
constexpr const char* kAppend =
    "INSERT INTO evidence (place, event, identity, dataId, measurement, frame, tripTimes, equalFrames, "
    "source, accessory, origin, utc, utcOffset, sinceBoot, program, previous, hash) VALUES (?, ?, ?, ?, ?, "
    "?, "
    "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";
constexpr const char* kLastRow = "SELECT place, hash FROM evidence ORDER BY place DESC LIMIT 1";
constexpr const char* kLastPlace = "SELECT seq FROM sqlite_sequence WHERE name = 'evidence'";
constexpr const char* kAll = "SELECT * FROM evidence ORDER BY place";
constexpr const char* kHasTable =
    "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = 'evidence'";

Prepared prepare(sqlite3* connection, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(connection, sql, -1, &statement, nullptr);
    return Prepared(statement);
}

// In the order of the columns.
class Binder {
  public:
    explicit Binder(sqlite3_stmt* statement) : statement_(statement) {}
    Binder& number(std::int64_t value) {
        sqlite3_bind_int64(statement_, ++column_, value);
        return *this;
    }
    // The text outlives the statement's step.
    Binder& text(std::string_view value) {
        sqlite3_bind_text64(statement_, ++column_, value.data(), value.size(), SQLITE_STATIC, SQLITE_UTF8);
        return *this;
    }
    Binder& bytes(std::string_view value) {
        sqlite3_bind_blob64(statement_, ++column_, value.data(), value.size(), SQLITE_STATIC);
        return *this;
    }
    Binder& bytes(const Sha256& hash) {
        return bytes({reinterpret_cast<const char*>(hash.data()), hash.size()});
    }

  private:
    sqlite3_stmt* statement_;
    int column_ = 0;
};

// The same for reading. Whatever is of another kind than it should be is empty, and `good` says so.
class Reader {
  public:
    explicit Reader(sqlite3_stmt* statement) : statement_(statement) {}
    std::int64_t number() {
        good &= sqlite3_column_type(statement_, column_) == SQLITE_INTEGER;
        return sqlite3_column_int64(statement_, column_++);
    }
    std::string text() { return bytesOf(SQLITE_TEXT); }
    std::string bytes() { return bytesOf(SQLITE_BLOB); }
    Sha256 hash() {
        const std::string read = bytes();
        Sha256 result{};
        good &= read.size() == result.size();
        if (read.size() == result.size()) std::copy(read.begin(), read.end(), result.begin());
        return result;
    }
    // The value whose name stands there.
    template <class Value, std::size_t Count>
    Value named(const std::array<const char*, Count>& names) {
        const auto found = std::find(names.begin(), names.end(), text());
        good &= found != names.end();
        return found != names.end() ? static_cast<Value>(found - names.begin()) : Value{};
    }

    bool good = true;

  private:
    std::string bytesOf(int type) {
        good &= sqlite3_column_type(statement_, column_) == type;
        const void* const read = sqlite3_column_blob(statement_, column_);
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column_++));
        return read != nullptr ? std::string(static_cast<const char*>(read), size) : std::string();
    }

    sqlite3_stmt* statement_;
    int column_ = 0;
};

template <class Number>
Number narrowed(std::int64_t wide, bool& good) {
    good &= static_cast<std::int64_t>(static_cast<Number>(wide)) == wide;
    return static_cast<Number>(wide);
}

bool readRow(sqlite3_stmt* statement, EvidenceRow& row) {
    Reader read(statement);
    row.place = read.number();
    row.event = read.named<EvidenceEvent>(kEventNames);
    row.identity = read.text();
    row.dataId = read.number();
    row.measurement = read.hash();
    row.evidence.frame = read.bytes();
    read.good &= unpackTripTimes(read.bytes(), row.evidence);
    row.evidence.equalFrames = narrowed<std::uint32_t>(read.number(), read.good);
    row.evidence.source = read.text();
    row.evidence.accessory = read.text();
    row.evidence.origin = read.named<Origin>(kOriginNames);
    row.moment.utc = read.number();
    row.moment.utcOffset = narrowed<std::int32_t>(read.number(), read.good);
    row.moment.sinceBoot = read.number();
    row.program = read.text();
    row.previous = read.hash();
    row.hash = read.hash();
    return read.good;
}

// Takes its hash as the previous one, and its place where that is behind the row's. The statement ends before
// the insert, whose failure the connection is to tell.
bool followLastRow(sqlite3* connection, EvidenceRow& row) {
    row.previous = {};
    const Prepared last = prepare(connection, kLastRow);
    const int status = last ? sqlite3_step(last.get()) : SQLITE_ERROR;
    if (status == SQLITE_ROW) {
        Reader read(last.get());
        row.place = std::max(row.place, read.number());
        row.previous = read.hash();
    }
    return status == SQLITE_ROW || status == SQLITE_DONE;
}

}  // namespace

bool makeEvidenceTable(sqlite3* connection) {
    return sqlite3_exec(connection, kCreate, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool readLastPlace(sqlite3* connection, std::int64_t& place) {
    place = 0;
    const Prepared last = prepare(connection, kLastPlace);
    const int status = last ? sqlite3_step(last.get()) : SQLITE_ERROR;
    if (status == SQLITE_ROW) place = sqlite3_column_int64(last.get(), 0);
    return status == SQLITE_ROW || status == SQLITE_DONE;
}

// The place behind the last that was ever given: where the end of the chain was taken away, it stays to be
// seen. Whatever was done to that count, the row gets a place of its own.
bool appendEvidence(sqlite3* connection, EvidenceRow& row) {
    if (!makeEvidenceTable(connection) || !readLastPlace(connection, row.place)) return false;
    if (!followLastRow(connection, row)) return false;
    ++row.place;
    row.hash = hashOf(row);

    const Prepared insert = prepare(connection, kAppend);
    if (!insert) return false;
    const std::string tripTimes = packedTripTimes(row.evidence);
    Binder(insert.get())
        .number(row.place)
        .text(nameOf(row.event))
        .text(row.identity)
        .number(row.dataId)
        .bytes(row.measurement)
        .bytes(row.evidence.frame)
        .bytes(tripTimes)
        .number(row.evidence.equalFrames)
        .text(row.evidence.source)
        .text(row.evidence.accessory)
        .text(nameOf(row.evidence.origin))
        .number(row.moment.utc)
        .number(row.moment.utcOffset)
        .number(row.moment.sinceBoot)
        .text(row.program)
        .bytes(row.previous)
        .bytes(row.hash);
    // Finalised it tells the same failure once more.
    return sqlite3_step(insert.get()) == SQLITE_DONE;
}

bool eachEvidence(sqlite3* connection,
                  const std::function<bool(const EvidenceRow& row, bool readable)>& visit) {
    const Prepared hasTable = prepare(connection, kHasTable);
    if (!hasTable || sqlite3_step(hasTable.get()) != SQLITE_ROW) return false;
    if (sqlite3_column_int(hasTable.get(), 0) == 0) return true;
    const Prepared all = prepare(connection, kAll);
    int status = all ? SQLITE_ROW : SQLITE_ERROR;
    while (all && (status = sqlite3_step(all.get())) == SQLITE_ROW) {
        EvidenceRow row;
        const bool readable = readRow(all.get(), row);
        if (!visit(row, readable)) return true;
    }
    return status == SQLITE_DONE;
}

}  // namespace kestrix::storage
