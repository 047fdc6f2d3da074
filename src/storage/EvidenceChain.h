#pragma once

#include <cstdint>
#include <functional>

#include "storage/Evidence.h"
#include "storage/PreparedStatement.h"

namespace kestrix::storage {

// The table `evidence`: one chain in each database, in which every row holds the hash of the one before.
// Nothing changes or deletes a row of it. An operation that answers false has failed, and the connection
// tells why.

// The end of the chain, where rows are appended. It keeps its statements prepared: it goes before its
// connection does.
class EvidenceChain {
  public:
    explicit EvidenceChain(sqlite3* connection) : connection_(connection) {}

    // Appends the row, which gives it its place and both hashes; the table is made where it is missing. In
    // the caller's transaction, which has the lock for writing.
    bool append(EvidenceRow& row);

  private:
    bool prepare(const EvidenceRow& next);
    bool follow(EvidenceRow& row);

    sqlite3* connection_;
    Prepared last_;
    Prepared insert_;
};

// Hands the rows from this place on over until the visitor answers false. readable: whether the row holds
// what such a row can hold; what cannot be read of it is empty. Without a table there are none.
using EvidenceVisitor = std::function<bool(const EvidenceRow& row, bool readable)>;
bool eachEvidence(sqlite3* connection, std::int64_t from, const EvidenceVisitor& visit);

// Whether there is the table.
bool hasEvidence(sqlite3* connection, bool& has);

// The last place that was ever given, whether its row is there or not. 0 before the first one.
bool readLastPlace(sqlite3* connection, std::int64_t& place);

// The last row's place and hash; place 0: there is no row.
struct ChainHead {
    std::int64_t place = 0;
    Sha256 hash{};

    bool operator==(const ChainHead&) const = default;
};
bool readHead(sqlite3* connection, ChainHead& head);

// The measurement from which on this database keeps evidence, as it remembers from when the table was made,
// even if that is gone. 0: it was never made.
bool readDueFrom(sqlite3* connection, std::int64_t& dataId);

}  // namespace kestrix::storage
