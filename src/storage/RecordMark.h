#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "storage/Evidence.h"
#include "storage/EvidenceChain.h"

namespace kestrix::storage {

// What a report says of the database that it was made from.
struct RecordMark {
    std::int64_t recordId = 0;
    Sha256 record{};   // the record's RecordDigest
    ChainHead head{};  // of the database's evidence then; place 0: there was none

    bool operator==(const RecordMark&) const = default;
};

// In one line: "record 3 sha256 0d2e...04c2, evidence 17 sha256 fa41...2a72"; without evidence it ends at the
// comma.
std::string textOf(const RecordMark& mark);

// The other way: from a text that holds such a line behind anything else. None for every other text.
std::optional<RecordMark> recordMarkIn(std::string_view text);

}  // namespace kestrix::storage
