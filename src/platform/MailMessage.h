#pragma once

#include <string>

#include "platform/Mail.h"

namespace kestrix::platform {

// The message as it stands on the wire (RFC 5322 and MIME): ASCII, lines of at most 998 bytes that end in CR
// LF. Its headers are From, To, Subject, Date, Message-ID and those of MIME, whatever the texts hold: control
// characters in them become blanks, bytes that are no UTF-8 become U+FFFD. May be called from any thread.
std::string mailText(const MailMessage& message);

}  // namespace kestrix::platform
