#include "history/ReportMail.h"

#include <utility>

#include "history/ExportFile.h"

namespace kestrix::history {
namespace {

constexpr const char* kNoRecipient = "-";
constexpr const char* kBody = "<H5>Kestrix Safety Tester</H5>";

}  // namespace

platform::MailMessage reportMail(const std::string& projectName, const std::string& stamp,
                                 const ExportFormat& format, std::string content) {
    return {
        .from = {},
        .recipient = kNoRecipient,
        .subject = projectName,
        .htmlBody = kBody,
        .attachment = platform::MailAttachment{
            .name = stamp + format.extension, .mediaType = format.mediaType, .content = std::move(content)}};
}

ExportedFile keepDraft(const std::string& text, const std::string& stamp,
                       const platform::DocumentsFolder& folder) {
    const std::string name = stamp + ".eml";
    return {
        .path = folder.filePath(QString::fromStdString(name)),
        .outcome = writeFileInFolder(folder, name, [&text](const ExportSink& sink) { return sink(text); })};
}

}  // namespace kestrix::history
