// Deletes one saved test record with its measurements.

#include <fmt/core.h>

#include <memory>
#include <string>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/Runner.h"
#include "apps/kestrix-cli/SavedRecords.h"
#include "storage/TestRecords.h"

namespace kestrix::cli {
namespace {

struct DeleteOptions {
    std::string id;
    std::string documents;
};

Ending deleteSaved(Runner& runner, const DeleteOptions& options) {
    runner.limitUnlessGiven(0);
    const std::optional<std::int64_t> id = recordIdOf(options.id);
    if (!id) return noSuchId(options.id);
    SavedRecords saved(options.documents);
    if (Ending ending = saved.open(); ending.status != kDone) return ending;
    if (saved.dao() == nullptr) return noSuchRecord(options.id, saved);
    storage::DeletedRecord deleted;
    const storage::Outcome outcome = storage::deleteRecord(*saved.dao(), *id, deleted);
    if (outcome == storage::recordIsGone()) return noSuchRecord(options.id, saved);
    if (!outcome.done) return saved.endingOf(outcome);
    const std::size_t count = deleted.measurements.size();
    return done(fmt::format("test record {} ({}) is deleted, with {} measurement{}", options.id,
                            deleted.record.projectName, count, count == 1 ? "" : "s"));
}

Action describeDelete(CommandOptions& options) {
    auto given = std::make_shared<DeleteOptions>();
    options.neededWord("id", given->id, "Number of the test record");
    describeDocuments(options, given->documents);
    return [given](Runner& runner) { return deleteSaved(runner, *given); };
}

}  // namespace

extern const Command deleteCommand;
const Command deleteCommand{"delete", "Delete a test record with its measurements", AtSignal::EndsIt,
                            describeDelete};

}  // namespace kestrix::cli
