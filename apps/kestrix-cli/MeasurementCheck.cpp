#include "apps/kestrix-cli/MeasurementCheck.h"

#include <fmt/core.h>
#include <sqlite3.h>

#include <map>
#include <tuple>
#include <utility>

#include "apps/common/PrintableText.h"
#include "apps/kestrix-cli/EvidenceFrames.h"
#include "display/Derivation.h"
#include "storage/EvidenceHash.h"
#include "storage/Rows.h"

namespace kestrix::cli {
namespace {

using storage::MeasureData;

constexpr int kNumbers = 2;  // the first columns; all others are texts
constexpr int kRowColumns = 9;

std::string named(const MeasureData& measure) {
    return fmt::format("measurement {} ({})", measure.dataId, app::printable(measure.dataName));
}

// Filing changes nothing but these two.
storage::Sha256 digestBeforeFiling(MeasureData measure) {
    measure.recordId = 0;
    measure.recordName.clear();
    return storage::digestOf(measure);
}

}  // namespace

// The kinds first: reading converts them.
void MeasurementRow::read(sqlite3_stmt* statement) {
    isOfKind = true;
    for (int column = 0; column < kRowColumns; ++column)
        isOfKind &=
            sqlite3_column_type(statement, column) == (column < kNumbers ? SQLITE_INTEGER : SQLITE_TEXT);
    storage::readRow(statement, data);
}

void MeasurementCheck::check(const MeasurementRow& row, const MeasurementState& state, bool older) {
    const MeasureData& measure = row.data;
    const auto find = [&](std::int64_t place, const char* what) {
        checked_.push_back({measure.dataId, place, named(measure) + what});
    };
    if (state.recorded == 0 && !older)
        find(0, " has no evidence: it was added by hand, or by a version that keeps none");
    if (state.place == 0) return;
    if (!row.isOfKind) find(state.place, " holds what no such row can hold");
    if (state.deleted) find(state.place, " was deleted, and is there");
    const storage::Sha256 now = storage::digestOf(measure);
    if (now != state.latest && state.recorded != 0 && digestBeforeFiling(measure) == state.first) {
        find(state.place,
             " is not in the test record where it was: by hand, or by a version that keeps no evidence");
    } else if (now != state.latest) {
        altered_.push_back({measure.dataId, state.place, now, state.latest, named(measure)});
    } else if (state.filed && state.recorded != 0 && digestBeforeFiling(measure) != state.first) {
        find(state.place, " had been altered when it was filed");
    }
}

void MeasurementCheck::derive(const MeasurementRow& row, const storage::Evidence& evidence,
                              MeasurementState& state) {
    const MeasureData& measure = row.data;
    std::string differences;
    if (const auto frames = framesOf(evidence)) {
        const display::StoredTexts texts = display::derivedFrom(*frames);
        const std::tuple<const char*, const std::string*, const std::string*> pairs[] = {
            {"function", &measure.function, &texts.function},
            {"parameters", &measure.parameters, &texts.parameters},
            {"result", &measure.result, &texts.results}};
        for (const auto& [name, stored, derived] : pairs) {
            if (*stored != *derived)
                differences +=
                    fmt::format("{}its {} is '{}', and its frames say '{}'", differences.empty() ? "" : "; ",
                                name, app::printable(*stored), app::printable(*derived));
        }
    } else {
        differences = "its evidence holds no whole frame";
    }
    using Derived = MeasurementState::Derived;
    state.derived = differences.empty() ? Derived::Same : Derived::Differs;
    derived_.erase(measure.dataId);
    if (!differences.empty())
        derived_[measure.dataId] = {state.recorded, named(measure), std::move(differences)};
}

void MeasurementCheck::forget(const std::unordered_set<std::int64_t>& dataIds) {
    const auto isOne = [&dataIds](const auto& found) { return dataIds.contains(found.dataId); };
    std::erase_if(checked_, isOne);
    std::erase_if(altered_, isOne);
}

// One line for each row: what it cannot be, or that it was swapped with one which holds what it should hold,
// or altered, then with what its frames say otherwise.
void MeasurementCheck::tell(std::vector<Verification::Finding>& findings) const {
    std::unordered_set<std::int64_t> told;
    for (const Verification::Finding& each : checked_) {
        findings.push_back(each);
        told.insert(each.dataId);
    }
    std::map<storage::Sha256, std::int64_t> should;
    for (const Altered& each : altered_) should.emplace(each.should, each.dataId);
    for (const Altered& each : altered_) {
        if (!told.insert(each.dataId).second) continue;
        const auto other = should.find(each.now);
        const auto derived = derived_.find(each.dataId);
        std::string text = each.name + " was altered: ";
        if (other != should.end()) {
            text =
                fmt::format("{} holds what was recorded as {}: they were swapped", each.name, other->second);
        } else {
            text += derived != derived_.end() ? derived->second.differences : "it is not as it was stored";
        }
        findings.push_back({each.dataId, each.place, std::move(text)});
    }
    for (const auto& [dataId, derived] : derived_) {
        if (told.insert(dataId).second)
            findings.push_back({dataId, derived.place, derived.name + ": " + derived.differences});
    }
}

}  // namespace kestrix::cli
