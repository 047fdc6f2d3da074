// The saved test records of a folder.

#include <memory>
#include <string>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/RowJson.h"
#include "apps/kestrix-cli/Runner.h"
#include "apps/kestrix-cli/SavedRecords.h"
#include "apps/kestrix-cli/TextTable.h"

namespace kestrix::cli {
namespace {

struct RecordsOptions {
    std::string documents;
    bool json = false;
};

Ending records(Runner& runner, const RecordsOptions& options) {
    runner.limitUnlessGiven(0);
    SavedRecords saved(options.documents);
    if (Ending ending = saved.open(); ending.status != kDone) return ending;
    std::vector<storage::RecordData> all;
    Ending ending = done();
    if (saved.dao() != nullptr) {
        all = saved.dao()->findRecordForm();
        ending = saved.endingOf(saved.dao()->lastOutcome());
    }
    TextTable table(
        {"Id", "Project", "Company", "Address", "Operator", "Serial number", "Start time", "Samples"});
    for (const storage::RecordData& record : all) {
        if (options.json) {
            runner.output().write(jsonLineOf(record));
            continue;
        }
        table.add({std::to_string(record.recordId), record.projectName, record.company, record.addres,
                   record.operators, record.serial, record.startTime, std::to_string(record.samples)});
    }
    if (!options.json) table.write(runner.output());
    runner.flush(runner.output());
    return ending;
}

Action describeRecords(CommandOptions& options) {
    auto given = std::make_shared<RecordsOptions>();
    describeDocuments(options, given->documents);
    options.flag("--json", given->json, "One JSON object for each");
    return [given](Runner& runner) { return records(runner, *given); };
}

}  // namespace

extern const Command recordsCommand;
const Command recordsCommand{"records", "The saved test records", AtSignal::CutsItShort, describeRecords};

}  // namespace kestrix::cli
