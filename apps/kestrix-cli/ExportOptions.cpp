#include "apps/kestrix-cli/ExportOptions.h"

#include <array>
#include <utility>

#include "apps/kestrix-cli/CommandOptions.h"
#include "apps/kestrix-cli/SavedRecords.h"
#include "history/PdfReport.h"

namespace kestrix::cli {
namespace {

using history::ExportFormat;

}  // namespace

void describeExportOptions(CommandOptions& options, ExportOptions& given) {
    options.neededWord("id", given.id, "Number of the test record");
    describeDocuments(options, given.documents);
    options.flag("--csv", given.csv, "The text with fields set apart by blanks, as the window writes it");
    options.flag("--pdf", given.pdf, "The report of one page");
    options.text("--format", "csv|json", given.format, "For spreadsheets (RFC 4180) or for programs");
    options.text("--output", "FILE", given.output,
                 "Write this file, which is new, and not one in the folder; - is standard output");
    options.text("--mail", "ADDRESS", given.mail, "Send it there");
    options.text("--smtp", "URI", given.smtp,
                 "Through this server: smtp://USER@HOST:PORT (STARTTLS) or smtps://USER@HOST:PORT (TLS)");
    options.text("--from", "ADDRESS", given.from, "Your own address");
    options.text("--cafile", "FILE", given.caFile, "Whom to believe the server's certificate");
    options.flag("--password-stdin", given.passwordFromInput,
                 "Read the password from standard input, not from the keyring");
    options.flag("--draft", given.draft, "Keep the mail in the folder (.eml) instead of sending it");
}

std::string problemOf(const ExportOptions& given) {
    if (given.format && *given.format != "csv" && *given.format != "json")
        return "--format " + *given.format + ": known are csv and json";
    const int formats = (given.csv ? 1 : 0) + (given.pdf ? 1 : 0) + (given.format ? 1 : 0);
    if (formats > 1) return "--csv, --pdf and --format exclude each other";
    if (formats == 0 && !given.mail) return "one of --csv, --pdf, --format and --mail is needed";
    if (given.mail && given.output) return "--mail and --output exclude each other";
    const std::array<std::pair<const char*, bool>, 5> ofMail{{{"--smtp", given.smtp.has_value()},
                                                              {"--from", given.from.has_value()},
                                                              {"--cafile", given.caFile.has_value()},
                                                              {"--password-stdin", given.passwordFromInput},
                                                              {"--draft", given.draft}}};
    for (const auto& [name, there] : ofMail) {
        if (there && !given.mail) return std::string(name) + " is for --mail";
    }
    const std::string why =
        given.mail ? platform::mailAddressProblem(*given.mail, "recipient") : std::string();
    return why.empty() ? why : "--mail: " + why;
}

const ExportFormat& formatOf(const ExportOptions& given) {
    if (given.pdf) return history::kPdfFormat;
    if (given.format) return *given.format == "csv" ? history::kCsvFormat : history::kJsonFormat;
    return history::kTextFormat;
}

std::string completeMailSettings(const ExportOptions& given, platform::MailSettings& settings) {
    if (given.smtp) {
        settings.server = {};
        if (std::string why = platform::readMailUri(*given.smtp, settings.server); !why.empty())
            return "--smtp: " + why;
    }
    if (given.from) settings.from = *given.from;
    if (given.caFile) settings.server.caFile = *given.caFile;
    if (settings.from.empty()) return "your own address is needed: --from ADDRESS";
    if (std::string why = platform::mailAddressProblem(settings.from, "sender"); !why.empty()) return why;
    if (settings.server.host.empty() && !given.draft)
        return "the mail server is needed: --smtp smtp://USER@HOST:PORT";
    return given.draft ? std::string() : platform::mailServerProblem(settings.server);
}

}  // namespace kestrix::cli
