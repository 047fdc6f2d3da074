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
    if (const storage::Sha256 now = storage::digestOf(measure); now != state.latest) {
        altered_.push_back({measure.dataId, state.place, now, state.latest, named(measure)});
    } else if (state.filed && state.recorded != 0 && digestBeforeFiling(measure) != state.first) {
        find(state.place, " had been altered when it was filed");
    }
}

void MeasurementCheck::derive(const MeasurementRow& row, const storage::Evidence& evidence,
                              MeasurementState& state) {
    const MeasureData& measure = row.data;
    const auto find = [&](std::string text) {
        state.derived = MeasurementState::Derived::Differs;
        derived_.push_back({measure.dataId, state.recorded, named(measure) + std::move(text)});
    };
    state.derived = MeasurementState::Derived::Same;
    const auto frames = framesOf(evidence);
    if (!frames) return find(": its evidence holds no whole frame");
    const display::StoredTexts texts = display::derivedFrom(*frames);
    const std::tuple<const char*, const std::string*, const std::string*> pairs[] = {
        {"function", &measure.function, &texts.function},
        {"parameters", &measure.parameters, &texts.parameters},
        {"result", &measure.result, &texts.results}};
    for (const auto& [name, stored, derived] : pairs) {
        if (*stored != *derived)
            find(fmt::format(": its {} is '{}', and its frames say '{}'", name, app::printable(*stored),
                             app::printable(*derived)));
    }
}

void MeasurementCheck::forget(const std::unordered_set<std::int64_t>& dataIds) {
    const auto isOne = [&dataIds](const auto& found) { return dataIds.contains(found.dataId); };
    std::erase_if(checked_, isOne);
    std::erase_if(altered_, isOne);
}

// Two that hold what the other should hold were swapped; the others were altered.
void MeasurementCheck::tell(std::vector<Verification::Finding>& findings) const {
    for (const auto* found : {&derived_, &checked_})
        findings.insert(findings.end(), found->begin(), found->end());
    std::map<storage::Sha256, std::int64_t> should;
    for (const Altered& each : altered_) should.emplace(each.should, each.dataId);
    for (const Altered& each : altered_) {
        const auto other = should.find(each.now);
        findings.push_back({each.dataId, each.place,
                            other != should.end()
                                ? fmt::format("{} holds what was recorded as {}: they were swapped",
                                              each.name, other->second)
                                : each.name + " was altered: it is not as it was stored"});
    }
}

}  // namespace kestrix::cli
