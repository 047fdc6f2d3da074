#pragma once

#include <optional>

#include "storage/Evidence.h"
#include "storage/MeasureData.h"
#include "storage/RecordData.h"
#include "storage/Sha256Sum.h"

namespace kestrix::storage {

// One hash of a whole test record: of its row, and of its measurements with how each was recorded. Nothing of
// them is kept.
class RecordDigest {
  public:
    explicit RecordDigest(const RecordData& record);

    // By ascending identity. recorded: none where there is no evidence of it.
    void add(const MeasureData& measure, const std::optional<EvidenceRow>& recorded);
    Sha256 value() const { return sum_.value(); }

  private:
    Sha256Sum sum_;
};

}  // namespace kestrix::storage
