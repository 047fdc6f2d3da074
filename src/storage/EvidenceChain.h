#pragma once

#include <functional>
#include <string>

#include "storage/Evidence.h"

struct sqlite3;

namespace kestrix::storage {

// The table `evidence`: one chain in each database, in which every row holds the hash of the one before.
// Nothing changes or deletes a row of it. An operation that answers false has failed, and the connection
// tells why.

// Makes the table where it is missing.
bool makeEvidenceTable(sqlite3* connection);

// Appends the row to the chain, which gives it its place and both hashes; the table is made where it is
// missing. In the caller's transaction, which has the lock for writing.
bool appendEvidence(sqlite3* connection, EvidenceRow& row);

// Hands the rows over by their places until the visitor answers false. readable: whether the row holds what
// such a row can hold; what cannot be read of it is empty. Without a table there are none.
bool eachEvidence(sqlite3* connection,
                  const std::function<bool(const EvidenceRow& row, bool readable)>& visit);

// The last place that was ever given, whether its row is there or not. 0 before the first one.
bool readLastPlace(sqlite3* connection, std::int64_t& place);

}  // namespace kestrix::storage
