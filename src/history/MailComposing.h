#pragma once

#include <QString>

#include <optional>
#include <string>

#include "platform/Mail.h"

namespace kestrix::history {

class MailComposeViewController;

// Hears how a mail ended, once. It closes the composer, or lets it stand: the composer does not close itself.
class MailComposeDelegate {
  public:
    virtual ~MailComposeDelegate() = default;
    // error: why it failed, or whether it may have been sent all the same; one line, or empty.
    virtual void mailComposeController(MailComposeViewController& controller,
                                       platform::MailResult didFinishWithResult,
                                       const std::string& error) = 0;
};

// What the user is to complete and send.
struct MailToCompose {
    std::string recipient;
    std::string subject;
    std::string htmlBody;
    std::optional<platform::MailAttachment> attachment;
    QString problem{};                        // what is wrong with the attachment; empty: nothing
    MailComposeDelegate* delegate = nullptr;  // not owned; it outlives the composer
};

// For the composer that is presented next, which takes it away.
inline std::optional<MailToCompose> mailToCompose;

}  // namespace kestrix::history
