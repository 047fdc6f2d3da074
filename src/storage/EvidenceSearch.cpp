#include "storage/EvidenceSearch.h"

#include <sqlite3.h>

#include <limits>
#include <utility>

#include "storage/EvidenceChain.h"
#include "storage/EvidenceColumns.h"

namespace kestrix::storage {
namespace {

constexpr const char* kFirstFrom =
    "SELECT place, dataId FROM evidence WHERE place >= ? AND event = 'recorded' ORDER BY place LIMIT 1";
constexpr const char* kRow = "SELECT * FROM evidence WHERE place = ?";

}  // namespace

bool EvidenceSearch::firstFrom(std::int64_t place, Step& first) {
    if (const auto known = ways_.find(place); known != ways_.end()) {
        first = known->second;
        return true;
    }
    first = {};
    if (noneFrom_ != 0 && place >= noneFrom_) return true;
    const InUse from(first_.get());
    sqlite3_bind_int64(from.get(), 1, place);
    const int status = sqlite3_step(from.get());
    if (status == SQLITE_ROW)
        first = {sqlite3_column_int64(from.get(), 0), sqlite3_column_int64(from.get(), 1)};
    if (status == SQLITE_DONE) noneFrom_ = place;
    if (first.place - place > kLongWay) ways_.emplace(place, first);
    return status == SQLITE_ROW || status == SQLITE_DONE;
}

bool EvidenceSearch::search(std::int64_t dataId, Step& step) {
    // Mostly the one behind the latest.
    if (next_ > 0) {
        if (!firstFrom(next_, step)) return false;
        if (step.place != 0 && step.dataId == dataId) return true;
    }
    ChainHead head;
    if (!readHead(connection_, head)) return false;
    if (std::exchange(head_, head.place) != head.place) noneFrom_ = 0;
    // The measurement is recorded at `low` or behind it, and before `high`.
    std::int64_t low = 1;
    std::int64_t high = head.place;
    while (low <= high) {
        const std::int64_t middle = low + (high - low) / 2;
        if (!firstFrom(middle, step)) return false;
        if (step.place != 0 && step.dataId == dataId) return true;
        if (step.place == 0 || step.dataId > dataId) {
            high = middle - 1;
        } else if (step.place < high) {
            low = step.place + 1;
        } else {
            break;
        }
    }
    step = {};
    return true;
}

bool EvidenceSearch::read(std::int64_t place, std::optional<EvidenceRow>& found) {
    const InUse row(row_.get());
    sqlite3_bind_int64(row.get(), 1, place);
    const int status = sqlite3_step(row.get());
    if (status == SQLITE_ROW && !readEvidence(row.get(), found.emplace())) found->hash = {};
    return status == SQLITE_ROW || status == SQLITE_DONE;
}

bool EvidenceSearch::find(std::int64_t dataId, std::optional<EvidenceRow>& found) {
    found.reset();
    if (!row_) {
        bool has = false;
        if (!hasEvidence(connection_, has)) return false;
        if (!has) return true;
        if (!readDueFrom(connection_, dueFrom_)) return false;
        first_ = prepare(connection_, kFirstFrom);
        row_ = prepare(connection_, kRow);
    }
    if (dataId < dueFrom_) return true;
    Step step;
    if (!first_ || !row_ || !search(dataId, step)) return false;
    if (step.place == 0) return true;
    const bool last = step.place == std::numeric_limits<std::int64_t>::max();
    next_ = last ? 0 : step.place + 1;
    return read(step.place, found);
}

}  // namespace kestrix::storage
