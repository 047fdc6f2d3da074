#pragma once

#include "storage/Evidence.h"

struct sqlite3_stmt;

namespace kestrix::storage {

// The columns of the table `evidence`, in their order.

// Binds them to a statement's parameters. row, and its trip times as packedTripTimes(): they outlive the
// statement's step.
void bindEvidence(sqlite3_stmt* statement, const EvidenceRow& row, const std::string& tripTimes);

// The row that a SELECT * stands on. False: it does not hold what such a row can hold; what cannot be read of
// it is empty.
bool readEvidence(sqlite3_stmt* statement, EvidenceRow& row);

// Zeros where there is none.
Sha256 readSha256(sqlite3_stmt* statement, int column);

}  // namespace kestrix::storage
