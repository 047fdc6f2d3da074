#include "apps/kestrix-cli/Verification.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "apps/common/PrintableText.h"
#include "apps/kestrix-cli/DatabaseFile.h"
#include "apps/kestrix-cli/EvidenceFrames.h"
#include "display/Derivation.h"
#include "storage/EvidenceChain.h"
#include "storage/EvidenceHash.h"
#include "storage/Rows.h"

namespace kestrix::cli {
namespace {

using storage::EvidenceEvent;
using storage::EvidenceRow;
using storage::MeasureData;
using storage::Sha256;

class Verifier {
  public:
    explicit Verifier(const DatabaseFile& file) : file_(file) {}

    Verification verify() {
        if (!walkChain() || !walkMeasurements()) return {.problem = file_.failure()};
        findSwapped();
        findMissing();
        std::stable_sort(
            result_.findings.begin(), result_.findings.end(), [](const auto& one, const auto& other) {
                return std::pair(one.place == 0, one.place) < std::pair(other.place == 0, other.place);
            });
        return std::move(result_);
    }

  private:
    // What the chain says of a measurement.
    struct Known {
        std::int64_t place = 0;  // of its latest event
        Sha256 measurement{};    // its row's digest behind that
        bool recorded = false;   // its frames are in the chain
        bool deleted = false;
        bool seen = false;
    };

    void find(std::int64_t dataId, std::int64_t place, std::string text) {
        result_.findings.push_back({dataId, place, std::move(text)});
    }

    bool walkChain() {
        std::int64_t lastPlace = 0;
        if (sqlite3_table_column_metadata(file_.connection(), nullptr, "evidence", nullptr, nullptr, nullptr,
                                          nullptr, nullptr, nullptr) == SQLITE_OK &&
            !storage::readLastPlace(file_.connection(), lastPlace))
            return false;
        Sha256 previous{};
        std::int64_t expected = 1;
        byIdentity_ = file_.prepare("SELECT * FROM measurefrom WHERE dataId = ?");
        if (!byIdentity_) return false;
        const bool read =
            storage::eachEvidence(file_.connection(), 0, [&](const EvidenceRow& row, bool readable) {
                gap(expected, row.place);
                expected = row.place + 1;
                check(row, readable, previous);
                previous = row.hash;
                return true;
            });
        if (!read) return false;
        gap(expected, lastPlace + 1);
        if (lastPlace < expected - 1) {
            result_.chainWhole = false;
            find(0, 0,
                 fmt::format("the database's own count of its evidence was altered: it says {}", lastPlace));
        }
        if (expected > 1) result_.head = storage::hexOf(previous);
        return true;
    }

    // The places from `expected` to the one before `next` are not there.
    void gap(std::int64_t expected, std::int64_t next) {
        if (next <= expected) return;
        result_.chainWhole = false;
        find(0, expected,
             next - expected == 1 ? fmt::format("evidence {} is missing", expected)
                                  : fmt::format("evidence {} to {} is missing", expected, next - 1));
    }

    void check(const EvidenceRow& row, bool readable, const Sha256& previous) {
        const char* broken = nullptr;
        if (!readable) {
            broken = "holds what no such row can hold";
        } else if (row.hash != storage::hashOf(row)) {
            broken = "was altered: it is not what its hash says";
        } else if (row.previous != previous) {
            broken = "does not follow the one before it";
        }
        if (broken != nullptr) {
            result_.chainWhole = false;
            find(0, row.place, fmt::format("evidence {} {}", row.place, broken));
        }
        Known& known = known_[row.dataId];
        // What is deleted or put back is the row as it was known.
        if (known.place != 0 &&
            (row.event == EvidenceEvent::Deleted || row.event == EvidenceEvent::PutBack) &&
            row.measurement != known.measurement)
            find(row.dataId, row.place,
                 fmt::format("measurement {} had been altered when it was {}", row.dataId,
                             storage::nameOf(row.event)));
        known.place = row.place;
        known.measurement = row.measurement;
        known.deleted = row.event == EvidenceEvent::Deleted;
        if (row.event == EvidenceEvent::Recorded) {
            known.recorded = true;
            derive(row);
        }
    }

    // Once more from the frames, beside what stands in the measurement's row if there is one.
    void derive(const EvidenceRow& row) {
        sqlite3_bind_int64(byIdentity_.get(), 1, row.dataId);
        const bool found = sqlite3_step(byIdentity_.get()) == SQLITE_ROW;
        if (found) storage::readRow(byIdentity_.get(), measure_);
        sqlite3_reset(byIdentity_.get());
        if (!found) return;
        const auto frames = framesOf(row.evidence);
        if (!frames)
            return find(row.dataId, row.place, named(measure_) + ": its evidence holds no whole frame");
        const display::StoredTexts texts = display::derivedFrom(*frames);
        const std::tuple<const char*, const std::string*, const std::string*> pairs[] = {
            {"function", &measure_.function, &texts.function},
            {"parameters", &measure_.parameters, &texts.parameters},
            {"result", &measure_.result, &texts.results}};
        bool same = true;
        for (const auto& [name, stored, derived] : pairs) {
            if (*stored == *derived) continue;
            same = false;
            find(row.dataId, row.place,
                 fmt::format("{}: its {} is '{}', and its frames say '{}'", named(measure_), name,
                             app::printable(*stored), app::printable(*derived)));
        }
        result_.derived += same ? 1 : 0;
    }

    bool walkMeasurements() {
        const DatabaseStatement all = file_.prepare("SELECT * FROM measurefrom ORDER BY dataId");
        if (!all) return false;
        std::int64_t firstRecorded = 0;
        for (const auto& [dataId, known] : known_) {
            if (known.recorded && (firstRecorded == 0 || dataId < firstRecorded)) firstRecorded = dataId;
        }
        int status = SQLITE_ROW;
        while ((status = sqlite3_step(all.get())) == SQLITE_ROW) {
            storage::readRow(all.get(), measure_);
            ++result_.measurements;
            look(measure_, firstRecorded);
        }
        return status == SQLITE_DONE;
    }

    void look(const MeasureData& measure, std::int64_t firstRecorded) {
        const auto found = known_.find(measure.dataId);
        if (found == known_.end() || !found->second.recorded) {
            const bool older = measure.dataId > 0 && (firstRecorded == 0 || measure.dataId < firstRecorded);
            result_.older += older ? 1 : 0;
            if (!older) find(measure.dataId, 0, named(measure) + " was added by hand: it has no evidence");
            if (found == known_.end()) return;
        }
        Known& known = found->second;
        known.seen = true;
        if (known.deleted) find(measure.dataId, known.place, named(measure) + " was deleted, and is there");
        if (const Sha256 now = storage::digestOf(measure); now != known.measurement)
            altered_.push_back({measure.dataId, now, named(measure)});
    }

    struct Altered {
        std::int64_t dataId;
        Sha256 now;
        std::string name;
    };

    // Two that hold what the other should hold were swapped; the others were altered.
    void findSwapped() {
        std::map<Sha256, std::int64_t> should;
        for (const Altered& each : altered_) should.emplace(known_[each.dataId].measurement, each.dataId);
        for (const Altered& each : altered_) {
            const auto other = should.find(each.now);
            find(each.dataId, known_[each.dataId].place,
                 other != should.end() ? fmt::format("{} holds what was recorded as {}: they were swapped",
                                                     each.name, other->second)
                                       : each.name + " was altered: it is not as it was stored");
        }
    }

    void findMissing() {
        for (const auto& [dataId, known] : known_) {
            if (!known.seen && !known.deleted)
                find(dataId, known.place, fmt::format("measurement {} is missing", dataId));
        }
    }

    static std::string named(const MeasureData& measure) {
        return fmt::format("measurement {} ({})", measure.dataId, app::printable(measure.dataName));
    }

    const DatabaseFile& file_;
    Verification result_;
    DatabaseStatement byIdentity_;
    MeasureData measure_;  // kept for its room
    std::unordered_map<std::int64_t, Known> known_;
    std::vector<Altered> altered_;
};

}  // namespace

Verification verifyDatabase(const std::string& path) {
    const DatabaseFile file(path);
    if (!file.problem().empty()) return {.problem = file.problem()};
    return Verifier(file).verify();
}

}  // namespace kestrix::cli
