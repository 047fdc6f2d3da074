#include "platform/SmtpTransport.h"

#include <pthread.h>
#include <signal.h>
#include <string.h>

#include <condition_variable>
#include <system_error>
#include <utility>

#include "platform/MailMessage.h"
#include "platform/MailSettings.h"

namespace kestrix::platform {
namespace {

// A window that closes waits no longer for a thread that nothing can interrupt.
constexpr std::chrono::milliseconds kPatience{700};

// Far beyond what any server takes, and far below what GLib's arrays hold.
constexpr std::size_t kLargestAttachment = std::size_t{1} << 30U;

std::string orderProblem(const MailOrder& order) {
    if (std::string problem = mailAddressProblem(order.message.from, "sender"); !problem.empty())
        return problem;
    if (std::string problem = mailAddressProblem(order.message.recipient); !problem.empty()) return problem;
    if (std::string problem = mailServerProblem(order.server); !problem.empty()) return problem;
    if (order.password.find('\0') != std::string::npos)
        return "the password has a character that cannot be sent";
    if (order.message.attachment && order.message.attachment->content.size() > kLargestAttachment)
        return "the file is too large for a mail";
    return {};
}

void forget(std::string& password) {
    explicit_bzero(password.data(), password.size());
    password.clear();
}

// Signals are the main thread's; and the one of a connection that has ended is nobody's.
void hearNoSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

}  // namespace

// What the transport shares with its thread, which may outlive it.
struct SmtpTransport::Delivery {
    // The transport's own; the thread never touches them.
    Progress progress{};
    Ended ended{};

    MailOrder order{};  // the thread's own
    SmtpCancellation cancellation{};

    std::mutex mutex{};  // for all that follows
    std::condition_variable over{};
    bool isOver = false;
    QObject* receiver = nullptr;  // none: nobody waits for it any more
    std::uint64_t sentBytes = 0;
    std::uint64_t allBytes = 0;
    bool progressIsUnderway = false;

    // The whole work of the thread.
    MailReport run(const SmtpLimits& limits, const std::function<void()>& progressed);
    // True when there is something new, and no call on its way that will tell it.
    bool note(std::uint64_t sent);
    // Has `call` called in the receiver's thread, unless nobody waits any more.
    void post(std::function<void()> call);
    void end();
};

MailReport SmtpTransport::Delivery::run(const SmtpLimits& limits, const std::function<void()>& progressed) {
    const std::string text = mailText(order.message);
    order.message.attachment.reset();
    {
        const std::lock_guard lock(mutex);
        allBytes = text.size();
    }
    MailReport report = transferMail(order, text, limits, cancellation, [&](std::uint64_t sent) {
        if (note(sent)) progressed();
    });
    forget(order.password);
    return report;
}

bool SmtpTransport::Delivery::note(std::uint64_t sent) {
    const std::lock_guard lock(mutex);
    if (sent == sentBytes) return false;
    sentBytes = sent;
    return !std::exchange(progressIsUnderway, true);
}

void SmtpTransport::Delivery::post(std::function<void()> call) {
    const std::lock_guard lock(mutex);
    if (receiver != nullptr) QMetaObject::invokeMethod(receiver, std::move(call), Qt::QueuedConnection);
}

void SmtpTransport::Delivery::end() {
    const std::lock_guard lock(mutex);
    isOver = true;
    over.notify_all();
}

SmtpTransport::~SmtpTransport() {
    if (delivery_ == nullptr) return;
    delivery_->progress = nullptr;
    delivery_->ended = nullptr;
    delivery_->cancellation.cancel();
    std::unique_lock lock(delivery_->mutex);
    delivery_->receiver = nullptr;
    const bool over = delivery_->over.wait_for(lock, kPatience, [this] { return delivery_->isOver; });
    lock.unlock();
    if (over) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

void SmtpTransport::send(MailOrder order, Progress progress, Ended ended) {
    std::string problem = delivery_ != nullptr ? "a mail is on its way already" : orderProblem(order);
    if (problem.empty()) {
        problem = start(order, std::move(progress), ended);
    }
    forget(order.password);
    if (problem.empty()) return;
    const MailReport report{MailResult::Failed, std::move(problem)};
    QMetaObject::invokeMethod(
        &receiver_, [ended = std::move(ended), report] { ended(report); }, Qt::QueuedConnection);
}

std::string SmtpTransport::start(MailOrder& order, Progress progress, const Ended& ended) {
    auto delivery = std::make_shared<Delivery>();
    delivery->progress = std::move(progress);
    delivery->ended = ended;
    delivery->order.password = order.password;
    delivery->order.server = std::move(order.server);
    delivery->order.message = std::move(order.message);
    delivery->receiver = &receiver_;
    const auto work = [this, delivery, limits = limits_] {
        hearNoSignals();
        MailReport report;
        try {
            report =
                delivery->run(limits, [&] { delivery->post([this, delivery] { tellProgress(*delivery); }); });
        } catch (const std::exception&) {  // a large file, and little memory
            report.why = "there is not enough memory for the mail";
        }
        delivery->post([this, delivery, report] { finish(*delivery, report); });
        delivery->end();
    };
    try {
        thread_ = std::thread(work);
    } catch (const std::system_error& error) {
        forget(delivery->order.password);
        return std::string("the mail could not be begun: ") + error.what();
    }
    delivery_ = delivery;
    return {};
}

void SmtpTransport::tellProgress(Delivery& delivery) {
    std::unique_lock lock(delivery.mutex);
    delivery.progressIsUnderway = false;
    const std::uint64_t sent = delivery.sentBytes;
    const std::uint64_t all = delivery.allBytes;
    lock.unlock();
    if (delivery.progress) delivery.progress(sent, all);
}

void SmtpTransport::finish(Delivery& delivery, const MailReport& report) {
    thread_.join();  // which has only to return
    delivery_.reset();
    const Ended ended = std::move(delivery.ended);
    ended(report);  // this object may be gone afterwards
}

void SmtpTransport::cancel() {
    if (delivery_ != nullptr) delivery_->cancellation.cancel();
}

std::string SmtpTransport::text(const MailMessage& message) const {
    return mailText(message);
}

}  // namespace kestrix::platform
