#pragma once

#include <string>

#include "platform/Mail.h"

namespace kestrix::history {

// The mail with an exported test record, but for what the user completes: its recipient is "-".
// projectName: its subject. fileName: of the attachment.
platform::MailMessage reportMail(const std::string& projectName, const std::string& fileName,
                                 std::string content);

}  // namespace kestrix::history
