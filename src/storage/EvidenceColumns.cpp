#include "storage/EvidenceColumns.h"

#include <sqlite3.h>

#include <algorithm>
#include <string_view>

#include "storage/EvidenceHash.h"

namespace kestrix::storage {
namespace {

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
    explicit Reader(sqlite3_stmt* statement, int first = 0) : statement_(statement), column_(first) {}
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
        // Of a text: as UTF-8, whatever the file's encoding is.
        const void* const read = type == SQLITE_TEXT
                                     ? static_cast<const void*>(sqlite3_column_text(statement_, column_))
                                     : sqlite3_column_blob(statement_, column_);
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column_++));
        return read != nullptr ? std::string(static_cast<const char*>(read), size) : std::string();
    }

    sqlite3_stmt* statement_;
    int column_;
};

template <class Number>
Number narrowed(std::int64_t wide, bool& good) {
    good &= static_cast<std::int64_t>(static_cast<Number>(wide)) == wide;
    return static_cast<Number>(wide);
}

}  // namespace

void bindEvidence(sqlite3_stmt* statement, const EvidenceRow& row, const std::string& tripTimes) {
    Binder(statement)
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
}

bool readEvidence(sqlite3_stmt* statement, EvidenceRow& row) {
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

Sha256 readSha256(sqlite3_stmt* statement, int column) {
    return Reader(statement, column).hash();
}

}  // namespace kestrix::storage
