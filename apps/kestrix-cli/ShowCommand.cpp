// The measurements of one saved test record.

#include <fmt/core.h>

#include <memory>
#include <optional>
#include <string>

#include "apps/common/PrintableText.h"
#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/EvidenceText.h"
#include "apps/kestrix-cli/RowJson.h"
#include "apps/kestrix-cli/Runner.h"
#include "apps/kestrix-cli/SavedRecords.h"
#include "apps/kestrix-cli/TextTable.h"

namespace kestrix::cli {
namespace {

struct ShowOptions {
    std::string id;
    std::string documents;
    bool json = false;
    bool evidence = false;
};

// One behind the other, each with what is known of how it came about.
Ending writeEvidence(Output& output, const std::vector<storage::MeasureData>& measurements,
                     SavedRecords& saved) {
    for (const storage::MeasureData& measure : measurements) {
        const std::optional<storage::EvidenceRow> row = saved.dao()->findRecorded(measure.dataId);
        if (!saved.dao()->lastOutcome().done) return saved.endingOf(saved.dao()->lastOutcome());
        output.line(fmt::format("{} {} {} {}: {}", measure.dataId, app::printable(measure.dataName),
                                app::printable(measure.dateTime), app::printable(measure.function),
                                app::printable(measure.result)));
        output.write(row ? evidenceText(*row) : "  there is no evidence of it\n");
    }
    return done();
}

void writeMeasurements(Output& output, const std::vector<storage::MeasureData>& measurements, bool json) {
    TextTable table({"Id", "Data Name", "Function", "Parameters", "Result", "Date Time"});
    for (const storage::MeasureData& measure : measurements) {
        if (json) {
            output.write(jsonLineOf(measure));
            continue;
        }
        table.add({std::to_string(measure.dataId), measure.dataName, measure.function, measure.parameters,
                   measure.result, measure.dateTime});
    }
    if (!json) table.write(output);
}

Ending show(Runner& runner, const ShowOptions& options) {
    runner.limitUnlessGiven(0);
    const std::optional<std::int64_t> id = recordIdOf(options.id);
    if (!id) return noSuchId(options.id);
    SavedRecords saved(options.documents);
    if (Ending ending = saved.open(); ending.status != kDone) return ending;
    if (saved.dao() == nullptr) return noSuchRecord(options.id, saved);
    const bool known = !saved.dao()->findRecordofId(*id).empty();
    if (!saved.dao()->lastOutcome().done) return saved.endingOf(saved.dao()->lastOutcome());
    if (!known) return noSuchRecord(options.id, saved);
    const std::vector<storage::MeasureData> measurements = saved.dao()->findMeasureofId(*id);
    Ending ending = saved.endingOf(saved.dao()->lastOutcome());
    if (options.evidence && ending.status == kDone) {
        ending = writeEvidence(runner.output(), measurements, saved);
    } else {
        writeMeasurements(runner.output(), measurements, options.json);
    }
    runner.flush(runner.output());
    return ending;
}

Action describeShow(CommandOptions& options) {
    auto given = std::make_shared<ShowOptions>();
    options.neededWord("id", given->id, "Number of the test record");
    describeDocuments(options, given->documents);
    options.flag("--json", given->json, "One JSON object for each");
    options.flag("--evidence", given->evidence, "What the tester sent for each, byte by byte");
    options.excludeEachOther("--json", "--evidence");
    return [given](Runner& runner) { return show(runner, *given); };
}

}  // namespace

extern const Command showCommand;
const Command showCommand{"show", "The measurements of a test record", AtSignal::CutsItShort, describeShow};

}  // namespace kestrix::cli
