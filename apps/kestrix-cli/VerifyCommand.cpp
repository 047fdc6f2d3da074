// Whether the measurements of a folder are what the tester sent.

#include <fmt/format.h>

#include <QFileInfo>

#include <memory>
#include <string>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/JsonText.h"
#include "apps/kestrix-cli/Runner.h"
#include "apps/kestrix-cli/SavedRecords.h"
#include "apps/kestrix-cli/Verification.h"

namespace kestrix::cli {
namespace {

struct VerifyOptions {
    std::string documents;
    bool json = false;
};

std::string counted(std::int64_t count, const char* what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string jsonOf(const Verification& result) {
    std::string line =
        fmt::format(R"({{"measurements":{},"derivedAgain":{},"withoutEvidence":{},"chainWhole":{},)",
                    result.measurements, result.derived, result.older, result.chainWhole);
    line += R"("head":)";
    appendJsonText(line, result.head);
    line += R"(,"findings":[)";
    for (const Verification::Finding& finding : result.findings) {
        line += fmt::format(R"({}{{"dataId":{},"place":{},"text":)", line.back() == '[' ? "" : ",",
                            finding.dataId, finding.place);
        appendJsonText(line, finding.text);
        line += '}';
    }
    return line + "]}";
}

Ending verify(Runner& runner, const VerifyOptions& options) {
    runner.limitUnlessGiven(0);
    const SavedRecords saved(options.documents);
    const QString file = saved.folder().filePath(QLatin1String(storage::kDatabaseFile));
    if (!QFileInfo::exists(file)) return failed(saved.path() + ": there is no database");
    const Verification result = verifyDatabase(file.toStdString());
    if (!result.problem.empty()) return failed(saved.path() + ": " + result.problem);
    if (options.json) {
        runner.output().line(jsonOf(result));
    } else {
        for (const Verification::Finding& finding : result.findings) runner.output().line(finding.text);
        runner.output().line(fmt::format(
            "{}, {} derived again, chain {}{}", counted(result.measurements, "measurement"), result.derived,
            result.chainWhole ? "whole" : "broken",
            result.older == 0 ? "" : fmt::format(", {} older than their evidence", result.older)));
    }
    runner.flush(runner.output());
    if (result.isClean()) return done();
    return failed(counted(static_cast<std::int64_t>(result.findings.size()), "difference"));
}

Action describeVerify(CommandOptions& options) {
    auto given = std::make_shared<VerifyOptions>();
    describeDocuments(options, given->documents);
    options.flag("--json", given->json, "One JSON object");
    return [given](Runner& runner) { return verify(runner, *given); };
}

}  // namespace

extern const Command verifyCommand;
const Command verifyCommand{"verify", "Derives every measurement again from what the tester sent",
                            AtSignal::CutsItShort, describeVerify};

}  // namespace kestrix::cli
