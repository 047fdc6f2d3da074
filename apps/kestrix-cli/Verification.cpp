#include "apps/kestrix-cli/Verification.h"

#include <fmt/core.h>
#include <sqlite3.h>

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

#include "apps/common/PrintableText.h"
#include "apps/kestrix-cli/ChainWalk.h"
#include "apps/kestrix-cli/DatabaseFile.h"
#include "apps/kestrix-cli/DatabaseTables.h"
#include "apps/kestrix-cli/MeasurementCheck.h"
#include "storage/EvidenceChain.h"

namespace kestrix::cli {
namespace {

using storage::EvidenceRow;
using Derived = MeasurementState::Derived;

constexpr std::int64_t kFirst = std::numeric_limits<std::int64_t>::min();
constexpr int kNoLimit = std::numeric_limits<int>::max();

constexpr const char* kNotInOrder = "it is damaged: its rows do not follow each other";

// The identities in their order, in pieces: where the next one begins.
class Road {
  public:
    std::int64_t next() const { return next_; }
    bool isAtEnd() const { return ended_; }
    // False for one that is no further on. A damaged file can lead round in a circle.
    bool pass(std::int64_t identity) {
        if (ended_ || identity < next_) return false;
        ended_ = identity == std::numeric_limits<std::int64_t>::max();
        if (!ended_) next_ = identity + 1;
        return true;
    }

  private:
    std::int64_t next_ = kFirst;
    bool ended_ = false;
};

// First along the chain, then along the measurements, in slices. Whatever is done with a measurement
// meanwhile is in the chain as well, in the same transaction: those that the chain tells of since then are
// looked at once more at the end, in one piece with what came to both tables.
class Verifier {
  public:
    Verifier(DatabaseFile& file, const VerificationSlices& slices) : file_(file), slices_(slices) {}

    Verification verify() {
        if (!walk(&Verifier::readChain)) return failed();
        noteTouched_ = true;
        if (!walk(&Verifier::readMeasurements) || !walk(&Verifier::readChain)) return failed();
        if (!file_.readTogether([this] { return readRest(); })) return failed();
        tell();
        return std::move(result_);
    }

  private:
    // Reads so many rows on, at most; whole: there are no more.
    using ReadSlice = bool (Verifier::*)(int most, bool& whole);

    Verification failed() const { return {.problem = file_.problem()}; }

    bool walk(ReadSlice read) {
        bool whole = false;
        while (!whole) {
            if (!file_.readTogether([&] { return (this->*read)(slices_.rows, whole); })) return false;
            if (slices_.between) slices_.between();
        }
        return true;
    }

    bool readChain(int most, bool& whole) {
        if (dueFrom_ == 0 && !storage::readDueFrom(file_.connection(), dueFrom_)) return false;
        int rows = 0;
        const auto visit = [&](const EvidenceRow& row, bool readable) {
            if (!chainRoad_.pass(row.place)) file_.spoil(kNotInOrder);
            return file_.problem().empty() && take(row, readable) && ++rows < most;
        };
        if (!chainRoad_.isAtEnd() && !storage::eachEvidence(file_.connection(), chainRoad_.next(), visit))
            return false;
        whole = rows < most;
        return file_.problem().empty();
    }

    bool take(const EvidenceRow& row, bool readable) {
        MeasurementState* const state = chain_.take(row, readable);
        if (state == nullptr) return true;
        if (noteTouched_) touched_.insert(row.dataId);
        if (row.event != storage::EvidenceEvent::Recorded) return true;
        bool found = false;
        if (!readRow(row.dataId, found)) return false;
        if (found) check_.derive(row_, row.evidence, *state);
        return true;
    }

    // The measurement's row, if there is one.
    bool readRow(std::int64_t dataId, bool& found) {
        if (!byIdentity_) byIdentity_ = file_.prepare("SELECT * FROM measurefrom WHERE dataId = ?");
        sqlite3_bind_int64(byIdentity_.get(), 1, dataId);
        const int status = byIdentity_ ? sqlite3_step(byIdentity_.get()) : SQLITE_ERROR;
        found = status == SQLITE_ROW;
        if (found) row_.read(byIdentity_.get());
        if (!found && status != SQLITE_DONE) file_.spoil();
        sqlite3_reset(byIdentity_.get());
        return found || status == SQLITE_DONE;
    }

    bool readMeasurements(int most, bool& whole) {
        whole = true;
        if (road_.isAtEnd()) return true;
        const storage::Prepared all =
            file_.prepare("SELECT * FROM measurefrom WHERE dataId >= ? ORDER BY dataId LIMIT ?");
        if (!all) return false;
        sqlite3_bind_int64(all.get(), 1, road_.next());
        sqlite3_bind_int(all.get(), 2, most);
        int rows = 0;
        int status = SQLITE_DONE;
        for (; (status = sqlite3_step(all.get())) == SQLITE_ROW; ++rows) {
            row_.read(all.get());
            if (!road_.pass(row_.data.dataId)) file_.spoil(kNotInOrder);
            if (!file_.problem().empty() || !meet()) return false;
        }
        whole = rows < most;
        return status == SQLITE_DONE;
    }

    // The row that was read.
    bool meet() {
        MeasurementState& state = states_[row_.data.dataId];
        state.there = true;
        // It was not there when the chain told of it.
        const auto derive = [&](const EvidenceRow& row, bool) {
            if (row.place == state.recorded) check_.derive(row_, row.evidence, state);
            return false;
        };
        if (state.recorded != 0 && state.derived == Derived::NotYet &&
            !storage::eachEvidence(file_.connection(), state.recorded, derive))
            return false;
        check_.check(row_, state, isOlder(row_.data.dataId));
        return true;
    }

    bool readRest() {
        bool whole = false;
        if (!readChain(kNoLimit, whole) || !lookAgain() || !readMeasurements(kNoLimit, whole)) return false;
        std::string damage;
        if (!whyNotFound(file_.connection(), damage)) return false;
        if (!damage.empty()) find(app::printable(damage));
        bool has = false;
        std::int64_t lastPlace = 0;
        if (!storage::hasEvidence(file_.connection(), has)) return false;
        if (has && !storage::readLastPlace(file_.connection(), lastPlace)) return false;
        if (has) chain_.end(lastPlace);
        result_.chainWhole = chain_.isWhole() && (has || dueFrom_ <= 0);
        if (!has && dueFrom_ > 0) find("the table of the evidence is missing");
        return true;
    }

    // At those that were looked at, and were touched since then.
    bool lookAgain() {
        check_.forget(touched_);
        const std::vector<std::int64_t> inOrder = [this] {
            std::vector<std::int64_t> all(touched_.begin(), touched_.end());
            std::sort(all.begin(), all.end());
            return all;
        }();
        return std::all_of(inOrder.begin(), inOrder.end(), [this](std::int64_t dataId) {
            if (!road_.isAtEnd() && dataId >= road_.next()) return true;
            states_[dataId].there = false;
            bool found = false;
            return readRow(dataId, found) && (!found || meet());
        });
    }

    // Where the database does not say from when on it keeps evidence, the first one says it.
    bool isOlder(std::int64_t dataId) const {
        const std::int64_t first = dueFrom_ > 0 ? dueFrom_ : chain_.firstRecorded();
        return dataId > 0 && (first == 0 || dataId < first);
    }

    void find(std::string text) { result_.findings.push_back({0, 0, std::move(text)}); }

    void tell() {
        result_.head = chain_.head();
        const std::int64_t first = chain_.firstRecorded();
        if (dueFrom_ < 0 || (first > 0 && dueFrom_ > first))
            find(fmt::format("the database's own note of where its evidence begins was altered: it says {}",
                             dueFrom_));
        check_.tell(result_.findings);
        for (const auto& [dataId, state] : states_) count(dataId, state);
        std::stable_sort(
            result_.findings.begin(), result_.findings.end(), [](const auto& one, const auto& other) {
                return std::pair(one.place == 0, one.place) < std::pair(other.place == 0, other.place);
            });
    }

    void count(std::int64_t dataId, const MeasurementState& state) {
        if (!state.there) {
            if (state.place != 0 && !state.deleted)
                result_.findings.push_back({dataId, state.place,
                                            fmt::format("measurement {} is missing: it was deleted by hand, "
                                                        "or by a version that keeps no evidence",
                                                        dataId)});
            return;
        }
        ++result_.measurements;
        result_.derived += state.derived == Derived::Same ? 1 : 0;
        result_.older += state.recorded == 0 && isOlder(dataId) ? 1 : 0;
        const bool recorded = state.recorded != 0;
        result_.simulated += recorded && state.origin == storage::Origin::Simulated ? 1 : 0;
        result_.replayed += recorded && state.origin == storage::Origin::Replayed ? 1 : 0;
    }

    DatabaseFile& file_;
    const VerificationSlices& slices_;
    storage::Prepared byIdentity_;
    Verification result_;
    MeasurementStates states_;
    ChainWalk chain_{states_, result_.findings};
    MeasurementCheck check_;
    Road chainRoad_;
    Road road_;
    MeasurementRow row_;  // kept for its room
    std::int64_t dueFrom_ = 0;
    bool noteTouched_ = false;
    std::unordered_set<std::int64_t> touched_;
};

}  // namespace

Verification verifyDatabase(const std::string& path, const VerificationSlices& slices) {
    DatabaseFile file(path);
    if (!file.problem().empty()) return {.problem = file.problem()};
    return Verifier(file, slices).verify();
}

}  // namespace kestrix::cli
