#pragma once

#include <curl/curl.h>

#include <string>

#include "platform/Mail.h"
#include "platform/SmtpConversation.h"

namespace kestrix::platform {

// What is known of a transfer that failed.
struct SmtpFailure {
    CURLcode code = CURLE_OK;
    std::string detail{};       // the library's own words
    long systemError = 0;       // errno of a connection that could not be made
    bool connected = false;     // a connection was tried: the name is known
    bool leftLoopback = false;  // the name of the loopback led to another machine
};

// Why a mail was not sent, in one line for its user. What the server said is made printable.
std::string smtpProblem(const SmtpFailure& failure, const SmtpConversation& conversation,
                        const MailServer& server, const MailMessage& message);

}  // namespace kestrix::platform
