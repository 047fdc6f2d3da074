#include "apps/kestrix-cli/ChainWalk.h"

#include <fmt/core.h>

#include <utility>

#include "storage/EvidenceHash.h"

namespace kestrix::cli {
namespace {

using storage::EvidenceEvent;
using storage::EvidenceRow;

const char* whyBroken(const EvidenceRow& row, bool readable, const storage::Sha256& previous) {
    if (!readable || row.place < 1) return "holds what no such row can hold";
    if (row.hash != storage::hashOf(row)) return "was altered: it is not what its hash says";
    if (row.previous != previous) return "does not follow the one before it";
    return nullptr;
}

// What the event cannot have found as the chain knew it; null where it fits. Only a deleted measurement is
// put back, and nothing takes filing back.
const char* whyNotAsKnown(const EvidenceRow& row, const MeasurementState& known) {
    if (known.place == 0) return nullptr;
    switch (row.event) {
        case EvidenceEvent::Recorded:
            return "was recorded twice: its number was given again";
        case EvidenceEvent::Filed:
            if (known.deleted) return "had been deleted, and was there when it was filed";
            return known.filed ? "had been altered when it was filed" : nullptr;
        case EvidenceEvent::Deleted:
            if (known.deleted) return "had been deleted, and was there when it was deleted";
            return row.measurement != known.latest ? "had been altered when it was deleted" : nullptr;
        case EvidenceEvent::PutBack:
            if (!known.deleted) return "was missing when it was put back";
            return row.measurement != known.latest ? "had been altered when it was put back" : nullptr;
    }
    return nullptr;
}

}  // namespace

void ChainWalk::find(std::int64_t place, std::string text) {
    whole_ = false;
    findings_.push_back({0, place, std::move(text)});
}

// The places behind the last row to this one are not there.
void ChainWalk::missingTo(std::int64_t place) {
    if (place <= last_) return;
    const std::int64_t first = last_ + 1;
    find(first, first == place ? fmt::format("evidence {} is missing", first)
                               : fmt::format("evidence {} to {} is missing", first, place));
}

void ChainWalk::followPlace(std::int64_t place) {
    if (place < 1) return;
    missingTo(place - 1);
    last_ = place;
}

MeasurementState* ChainWalk::take(const EvidenceRow& row, bool readable) {
    followPlace(row.place);
    if (const char* const broken = whyBroken(row, readable, previous_))
        find(row.place, fmt::format("evidence {} {}", row.place, broken));
    previous_ = row.hash;
    any_ = true;
    if (row.place < 1 || (!readable && row.dataId == 0)) return nullptr;

    MeasurementState& state = states_[row.dataId];
    if (const char* const why = whyNotAsKnown(row, state))
        findings_.push_back({row.dataId, row.place, fmt::format("measurement {} {}", row.dataId, why)});
    state.place = row.place;
    state.latest = row.measurement;
    state.deleted = row.event == EvidenceEvent::Deleted;
    state.filed |= row.event == EvidenceEvent::Filed;
    if (row.event == EvidenceEvent::Recorded) {
        state.recorded = row.place;
        state.first = row.measurement;
        state.origin = row.evidence.origin;
        state.derived = MeasurementState::Derived::NotYet;
        if (row.dataId > 0 && (firstRecorded_ == 0 || row.dataId < firstRecorded_))
            firstRecorded_ = row.dataId;
    }
    return &state;
}

void ChainWalk::end(std::int64_t lastPlace) {
    missingTo(lastPlace);
    if (lastPlace < last_)
        find(0, fmt::format("the database's own count of its evidence was altered: it says {}", lastPlace));
}

std::string ChainWalk::head() const {
    return any_ ? storage::hexOf(previous_) : std::string();
}

}  // namespace kestrix::cli
