#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

// A mail, the server that takes it, and who brings it there.
namespace kestrix::platform {

struct MailAttachment {
    std::string name;       // of the file, without a folder
    std::string mediaType;  // "application/pdf"; without a "/" it is the kind of a text: "csv"
    std::string content;    // bytes
};

// Texts are UTF-8.
struct MailMessage {
    std::string from;       // an address
    std::string recipient;  // an address
    std::string subject;
    std::string htmlBody;
    std::optional<MailAttachment> attachment{};
    std::chrono::system_clock::time_point date{};
};

enum class MailSecurity : std::uint8_t {
    StartTls,  // begins in the clear; nothing is said to another machine before it is encrypted
    Tls,       // encrypted from the first byte
};

struct MailServer {
    std::string host;
    std::uint16_t port = 0;  // 0: the usual one, 587 or, for Tls, 465
    MailSecurity security = MailSecurity::StartTls;
    std::string user;    // empty: it asks for no password
    std::string caFile;  // whom to believe certificates; empty: whom the system believes
};

enum class MailResult : std::uint8_t { Cancelled, Saved, Sent, Failed };

// How a mail ended.
struct MailReport {
    MailResult result = MailResult::Failed;
    std::string why{};  // in one line, of one that failed or may be sent
    // The server had all of it, and did not say whether it takes it.
    bool mayBeSent = false;
    bool loginRefused = false;  // it failed because of the user's name or the password
};

// What is to be sent, by whom.
struct MailOrder {
    MailServer server;
    std::string password;
    MailMessage message;
};

// Brings mails to their servers. It never blocks: the work is done in a thread of its own.
class MailTransport {
  public:
    using Progress = std::function<void(std::uint64_t sentBytes, std::uint64_t allBytes)>;
    using Ended = std::function<void(const MailReport&)>;

    // Cancels what is on its way and waits for that, a second at the most; nothing is called any more.
    virtual ~MailTransport() = default;

    // One at a time; a second one fails. The message's addresses and the server are checked first, and fail
    // with their line. Both calls come from the event loop of this thread, never from inside a call of this
    // object; `ended` comes once. It may send the next one or destroy this object.
    virtual void send(MailOrder order, Progress progress, Ended ended) = 0;
    // What is on its way ends as Cancelled, unless the server has accepted it already. Nothing without one.
    virtual void cancel() = 0;
    // The message as it would be sent, for a file (.eml): headers, body and attachment, lines ending in CR
    // LF. What is no address stands in it as a text that no program sends to.
    virtual std::string text(const MailMessage& message) const = 0;
};

}  // namespace kestrix::platform
