// Whether the measurements of a folder are what the tester sent.

#include <fmt/core.h>

#include <QFileInfo>

#include <memory>
#include <optional>
#include <string>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/JsonText.h"
#include "apps/kestrix-cli/OtherRows.h"
#include "apps/kestrix-cli/ReportCheck.h"
#include "apps/kestrix-cli/Runner.h"
#include "apps/kestrix-cli/SavedRecords.h"
#include "apps/kestrix-cli/Verification.h"
#include "history/ReportInformation.h"

namespace kestrix::cli {
namespace {

struct VerifyOptions {
    std::string documents;
    std::optional<std::string> report;
    bool json = false;
};

std::string counted(std::int64_t count, const char* what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string jsonOf(const Verification& result) {
    std::string line =
        fmt::format(R"({{"measurements":{},"derivedAgain":{},"older":{},"simulated":{},"replayed":{},)"
                    R"("chainWhole":{},)",
                    result.measurements, result.derived, result.older, result.simulated, result.replayed,
                    result.chainWhole);
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

// What there is none of is not told.
std::string alsoCounted(std::int64_t count, const char* what) {
    return count == 0 ? std::string() : fmt::format(", {} {}", count, what);
}

std::string summaryOf(const Verification& result) {
    return fmt::format("{}, {} derived again, chain {}{}{}{}", counted(result.measurements, "measurement"),
                       result.derived, result.chainWhole ? "whole" : "broken",
                       alsoCounted(result.older, "older than their evidence"),
                       alsoCounted(result.simulated, "simulated"), alsoCounted(result.replayed, "replayed"));
}

Ending writeVerification(Output& output, const Verification& result, bool json) {
    if (json) {
        output.line(jsonOf(result));
    } else {
        for (const Verification::Finding& finding : result.findings) output.line(finding.text);
        output.line(summaryOf(result));
    }
    if (result.isClean()) return done();
    return failed(counted(static_cast<std::int64_t>(result.findings.size()), "difference"));
}

std::string jsonOf(const storage::RecordMark& mark, const ReportCheck& check) {
    std::string line =
        fmt::format(R"({{"record":{},"evidence":{},"findings":[)", mark.recordId, mark.head.place);
    for (const std::string& finding : check.findings) {
        if (line.back() != '[') line += ',';
        appendJsonText(line, finding);
    }
    return line + "]}";
}

Ending verifyReport(Output& output, const VerifyOptions& options, const std::string& database) {
    if (QString::fromStdString(*options.report).toStdString() != *options.report)
        return wrongUsage("--file names a file in bytes that are no UTF-8");
    const history::ReportInformation report =
        history::reportInformationOf(QString::fromStdString(*options.report));
    if (!report.problem.empty()) return failed(*options.report + ": " + report.problem);
    const ReportCheck check = checkReport(database, report.mark);
    if (!check.problem.empty()) return failed(database + ": " + check.problem);
    if (options.json) {
        output.line(jsonOf(report.mark, check));
    } else {
        for (const std::string& finding : check.findings) output.line(finding);
        if (check.findings.empty())
            output.line(
                fmt::format("test record {} is as it was when the report was made", report.mark.recordId));
    }
    if (check.findings.empty()) return done();
    return failed("the database says otherwise than the report");
}

Ending verify(Runner& runner, const VerifyOptions& options) {
    runner.limitUnlessGiven(0);
    const SavedRecords saved(options.documents);
    const QString file = saved.folder().filePath(QLatin1String(storage::kDatabaseFile));
    const QFileInfo info(file);
    if (!info.exists()) return failed(saved.path() + ": there is no database");
    if (!info.isFile()) return failed(file.toStdString() + " is no file");
    Ending ending;
    if (options.report) {
        ending = verifyReport(runner.output(), options, file.toStdString());
    } else {
        const Verification result = verifyDatabase(file.toStdString());
        if (!result.problem.empty()) return failed(saved.path() + ": " + result.problem);
        ending = writeVerification(runner.output(), result, options.json);
    }
    runner.flush(runner.output());
    return ending;
}

Action describeVerify(CommandOptions& options) {
    auto given = std::make_shared<VerifyOptions>();
    describeDocuments(options, given->documents);
    options.text("--file", "REPORT.pdf", given->report,
                 "Whether the database still says what this report does");
    options.flag("--json", given->json, "One JSON object");
    return [given](Runner& runner) { return verify(runner, *given); };
}

}  // namespace

extern const Command verifyCommand;
const Command verifyCommand{kVerifyRow.name, kVerifyRow.summary, kVerifyRow.atSignal, describeVerify};

}  // namespace kestrix::cli
