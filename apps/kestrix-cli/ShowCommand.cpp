// The measurements of one saved test record.

#include <memory>
#include <string>

#include "apps/kestrix-cli/CommandOptions.h"
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
};

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
    writeMeasurements(runner.output(), saved.dao()->findMeasureofId(*id), options.json);
    runner.flush(runner.output());
    return saved.endingOf(saved.dao()->lastOutcome());
}

Action describeShow(CommandOptions& options) {
    auto given = std::make_shared<ShowOptions>();
    options.neededWord("id", given->id, "Number of the test record");
    describeDocuments(options, given->documents);
    options.flag("--json", given->json, "One JSON object for each");
    return [given](Runner& runner) { return show(runner, *given); };
}

}  // namespace

extern const Command showCommand;
const Command showCommand{"show", "The measurements of a test record", AtSignal::CutsItShort, describeShow};

}  // namespace kestrix::cli
