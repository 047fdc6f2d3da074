#pragma once

#include <string>
#include <string_view>

#include "storage/Evidence.h"
#include "storage/MeasureData.h"

namespace kestrix::storage {

// SHA-256 of bytes.
Sha256 sha256(std::string_view bytes);

// Of a measurement's row, whatever its identity is: every column but dataId.
Sha256 digestOf(const MeasureData& measure);

// The bytes that the hash of a row is made from, all but the hash itself: each field by its length, four
// bytes with the highest first, and its bytes; numbers in decimal digits. docs/database.md lists them.
std::string canonicalForm(const EvidenceRow& row);

inline Sha256 hashOf(const EvidenceRow& row) {
    return sha256(canonicalForm(row));
}

// The frames of the trip times as they stand in the table: for each one its row's number, 1 to 6, in one
// byte, and the frame's bytes.
std::string packedTripTimes(const Evidence& evidence);
// The other way. False, and the evidence as it was, for bytes that are none.
bool unpackTripTimes(std::string_view packed, Evidence& evidence);

// Lower-case hexadecimal digits, two a byte; between: what stands between two bytes, nothing without it.
std::string hexOf(std::string_view bytes, char between = '\0');
std::string hexOf(const Sha256& hash);

}  // namespace kestrix::storage
