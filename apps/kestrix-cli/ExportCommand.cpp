// Writes a saved test record to a file, or mails it.

#include <QGuiApplication>

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/EventLoop.h"
#include "apps/kestrix-cli/ExportMail.h"
#include "apps/kestrix-cli/ExportOptions.h"
#include "apps/kestrix-cli/ExportOutput.h"
#include "apps/kestrix-cli/OtherRows.h"
#include "apps/kestrix-cli/Runner.h"
#include "apps/kestrix-cli/SavedRecords.h"
#include "history/ExportLog.h"
#include "ui/SystemFont.h"

namespace kestrix::cli {
namespace {

// The report is drawn, though nowhere to be seen.
std::unique_ptr<QCoreApplication> makeApplication(Runner& runner, const ExportOptions& options) {
    if (!options.pdf) return std::make_unique<QCoreApplication>(runner.argc(), runner.argv());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    auto application = std::make_unique<QGuiApplication>(runner.argc(), runner.argv());
    ui::installSystemFont();
    return application;
}

// The end of the command says what failed. Qt has warnings about every machine without a desktop.
void leaveLogToTheEnd() {
    if (!history::lcExport().isInfoEnabled())  // as with --verbose
        QLoggingCategory::setFilterRules(QStringLiteral(
            "kestrix.storage.warning=false\nkestrix.export.warning=false\ndefault.warning=false"));
}

Ending exportRecord(Runner& runner, const ExportOptions& options) {
    runner.limitUnlessGiven(0);
    if (std::string why = problemOf(options); !why.empty()) return wrongUsage(std::move(why));
    const std::optional<std::int64_t> id = recordIdOf(options.id);
    if (!id) return noSuchId(options.id);
    SavedRecords saved(options.documents);
    if (Ending ending = saved.open(); ending.status != kDone) return ending;
    if (saved.dao() == nullptr) return noSuchRecord(options.id, saved);
    leaveLogToTheEnd();
    EventLoop loop(runner, makeApplication(runner, options));
    history::ExportedRecord record;
    const storage::Outcome found = history::findExportedRecord(*saved.dao(), *id, record);
    if (!found.done) return saved.endingOf(found);
    if (!record.record) return noSuchRecord(options.id, saved);
    record.goesOn = [&runner] { return !runner.stopping(); };
    record.timeStamp = history::getExportTime(std::chrono::system_clock::now());
    if (options.mail) return mailExport(runner, loop, options, record, saved.folder());
    if (options.output) return exportToOutput(runner, record, formatOf(options), *options.output);
    return exportToFolder(runner, record, formatOf(options), saved.folder());
}

Action describeExport(CommandOptions& options) {
    auto given = std::make_shared<ExportOptions>();
    describeExportOptions(options, *given);
    return [given](Runner& runner) { return exportRecord(runner, *given); };
}

}  // namespace

extern const Command exportCommand;
const Command exportCommand{kExportRow.name, kExportRow.summary, kExportRow.atSignal, describeExport};

}  // namespace kestrix::cli
