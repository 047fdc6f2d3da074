#include "history/ReportMail.h"

#include <utility>

namespace kestrix::history {
namespace {

constexpr const char* kNoRecipient = "-";
constexpr const char* kBody = "<H5>Kestrix Safety Tester</H5>";
constexpr const char* kTextType = "csv";

// Of the file's name.
std::string mediaTypeOf(const std::string& fileName) {
    if (fileName.ends_with(".pdf")) return "application/pdf";
    return fileName.ends_with(".json") ? "application/json" : kTextType;
}

}  // namespace

platform::MailMessage reportMail(const std::string& projectName, const std::string& fileName,
                                 std::string content) {
    return {.from = {},
            .recipient = kNoRecipient,
            .subject = projectName,
            .htmlBody = kBody,
            .attachment = platform::MailAttachment{
                .name = fileName, .mediaType = mediaTypeOf(fileName), .content = std::move(content)}};
}

}  // namespace kestrix::history
