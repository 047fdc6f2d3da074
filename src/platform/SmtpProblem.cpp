#include "platform/SmtpProblem.h"

#include <QString>

#include <cerrno>
#include <string_view>

#include "platform/MailSettings.h"
#include "platform/PrintableText.h"

namespace kestrix::platform {
namespace {

constexpr int kFirstRefusal = 400;
constexpr int kTooLarge = 552;

// What the server said no to.
std::string refusal(const SmtpConversation& conversation, const MailMessage& message) {
    const auto what = [&]() -> std::string {
        if (conversation.replyCode() == kTooLarge) return "the server refuses the mail: ";
        switch (conversation.step()) {
            case SmtpStep::StartTls:
                return "the server refuses encryption (STARTTLS): ";
            case SmtpStep::Login:
                return "the server did not accept the user's name or the password: ";
            case SmtpStep::Sender:
                return "the server refuses the sender " + message.from + ": ";
            case SmtpStep::Recipient:
                return "the server refuses the recipient " + message.recipient + ": ";
            case SmtpStep::Data:
            case SmtpStep::Content:
                return "the server refuses the mail: ";
            default:
                return "the server refuses the connection: ";
        }
    }();
    return what + std::to_string(conversation.replyCode()) + " " + conversation.replyText();
}

std::string noConnection(const SmtpFailure& failure, const MailServer& server) {
    const std::string port = " at port " + std::to_string(portOf(server));
    if (failure.leftLoopback)
        return server.host + " leads to another machine, to which nothing is sent without encryption";
    switch (failure.systemError) {
        case ECONNREFUSED:
            return server.host + " refuses connections" + port;
        case ENETUNREACH:
        case EHOSTUNREACH:
            return server.host + " cannot be reached";
        default:
            return "no connection to " + server.host + port +
                   (failure.systemError != 0
                        ? ": " + qt_error_string(static_cast<int>(failure.systemError)).toStdString()
                        : std::string());
    }
}

// "SSL certificate problem: self-signed certificate": what stands behind the first colon.
std::string_view reasonIn(std::string_view detail) {
    const std::size_t colon = detail.find(": ");
    return colon == std::string_view::npos ? detail : detail.substr(colon + 2);
}

std::string untrusted(const SmtpFailure& failure, const MailServer& server) {
    const bool ofAnother = failure.detail.find("target host name") != std::string::npos;
    return "the certificate of " + server.host + " is not trusted: " +
           (ofAnother ? "it is another machine's" : std::string(reasonIn(failure.detail)));
}

std::string silence(const SmtpFailure& failure, const SmtpConversation& conversation,
                    const MailServer& server) {
    if (!failure.connected) return server.host + " is not known: no name server answers";
    if (conversation.step() == SmtpStep::None) return "the server does not answer";
    if (conversation.step() == SmtpStep::Content) return "the server does not answer while the mail is sent";
    return "the server does not answer any more";
}

std::string broken(const SmtpConversation& conversation) {
    if (conversation.step() == SmtpStep::Content) return "the connection broke while sending";
    return "the server broke the connection off before the mail was sent";
}

std::string reason(const SmtpFailure& failure, const SmtpConversation& conversation, const MailServer& server,
                   const MailMessage& message) {
    if (conversation.replyCode() >= kFirstRefusal) return refusal(conversation, message);
    switch (failure.code) {
        case CURLE_COULDNT_RESOLVE_HOST:
            return server.host + " is not known";
        case CURLE_COULDNT_CONNECT:
            return noConnection(failure, server);
        case CURLE_OPERATION_TIMEDOUT:
            return silence(failure, conversation, server);
        case CURLE_USE_SSL_FAILED:
            return "the server offers no encryption (STARTTLS), without which nothing is sent to another "
                   "machine";
        case CURLE_PEER_FAILED_VERIFICATION:
            return untrusted(failure, server);
        case CURLE_SSL_CACERT_BADFILE:
            return "the file of certificates, " + server.caFile + ", cannot be used";
        case CURLE_SSL_CONNECT_ERROR:
            return "no encrypted connection to " + hostAndPort(server) + ": " + failure.detail;
        case CURLE_LOGIN_DENIED:
            return "the server takes no login with a name and a password";
        case CURLE_GOT_NOTHING:
        case CURLE_SEND_ERROR:
        case CURLE_RECV_ERROR:
        case CURLE_PARTIAL_FILE:
            return broken(conversation);
        case CURLE_OUT_OF_MEMORY:
            return "there is not enough memory for the mail";
        case CURLE_WEIRD_SERVER_REPLY:
            // The greeting, or the answer to the mail, was not one of a mail server's.
            return conversation.replyCode() == 0 ? broken(conversation)
                                                 : "the server answers as no mail server does";
        default:
            return "the mail could not be sent: " +
                   (failure.detail.empty() ? std::string(curl_easy_strerror(failure.code)) : failure.detail);
    }
}

}  // namespace

std::string smtpProblem(const SmtpFailure& failure, const SmtpConversation& conversation,
                        const MailServer& server, const MailMessage& message) {
    return printableText(reason(failure, conversation, server, message));
}

}  // namespace kestrix::platform
