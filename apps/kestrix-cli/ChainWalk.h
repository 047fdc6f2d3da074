#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/kestrix-cli/MeasurementState.h"
#include "apps/kestrix-cli/Verification.h"

namespace kestrix::cli {

// Goes along the chain of evidence row by row, notes what it says of each measurement, and finds what does
// not fit together.
class ChainWalk {
  public:
    // Both outlive it.
    ChainWalk(MeasurementStates& states, std::vector<Verification::Finding>& findings)
        : states_(states), findings_(findings) {}

    // The rows in the order of their places. What it says of the measurement is noted; null when the row
    // cannot say of which one.
    MeasurementState* take(const storage::EvidenceRow& row, bool readable);
    // Behind the last row. lastPlace: the last one that the database says it ever gave.
    void end(std::int64_t lastPlace);

    bool isWhole() const { return whole_; }
    // Of the last row; empty before it.
    std::string head() const;
    // The first measurement whose frames are there; 0: there is none.
    std::int64_t firstRecorded() const { return firstRecorded_; }

  private:
    void find(std::int64_t place, std::string text);
    void followPlace(std::int64_t place);
    void missingTo(std::int64_t place);

    MeasurementStates& states_;
    std::vector<Verification::Finding>& findings_;
    std::int64_t last_ = 0;  // place
    storage::Sha256 previous_{};
    std::int64_t firstRecorded_ = 0;
    bool any_ = false;
    bool whole_ = true;
};

}  // namespace kestrix::cli
