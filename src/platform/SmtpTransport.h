#pragma once

#include <QObject>

#include <memory>
#include <thread>

#include "platform/Mail.h"
#include "platform/SmtpTransfer.h"

namespace kestrix::platform {

// Speaks SMTP in a thread of its own. To another machine nothing goes unencrypted, and every certificate is
// verified.
class SmtpTransport final : public MailTransport {
  public:
    explicit SmtpTransport(SmtpLimits limits = {}) : limits_(limits) {}
    ~SmtpTransport() override;

    void send(MailOrder order, Progress progress, Ended ended) override;
    void cancel() override;
    std::string text(const MailMessage& message) const override;

  private:
    struct Delivery;

    // Answers what is wrong; empty: it is on its way.
    std::string start(MailOrder& order, Progress progress, const Ended& ended);
    void tellProgress(Delivery& delivery);
    void finish(Delivery& delivery, const MailReport& report);

    SmtpLimits limits_;
    std::shared_ptr<Delivery> delivery_;  // on its way; shared with its thread
    std::thread thread_;
    QObject receiver_;  // of the thread's calls
};

}  // namespace kestrix::platform
