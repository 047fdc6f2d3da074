#pragma once

#include <string>

#include "history/Export.h"
#include "platform/DocumentsFolder.h"
#include "platform/Mail.h"

namespace kestrix::history {

// The mail with an exported test record, but for what the user completes: its recipient is "-".
// projectName: its subject. stamp: the attachment is named by it. content: in this format.
platform::MailMessage reportMail(const std::string& projectName, const std::string& stamp,
                                 const ExportFormat& format, std::string content);

// Writes the mail (`text`, as it would be sent) into the documents folder, as <stamp>.eml. One of the same
// second is replaced.
ExportedFile keepDraft(const std::string& text, const std::string& stamp,
                       const platform::DocumentsFolder& folder);

}  // namespace kestrix::history
