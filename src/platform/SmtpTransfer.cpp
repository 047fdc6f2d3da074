#include "platform/SmtpTransfer.h"

#include <arpa/inet.h>
#include <curl/curl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string_view>

#include "platform/MailSettings.h"
#include "platform/SmtpConversation.h"
#include "platform/SmtpProblem.h"

namespace kestrix::platform {
namespace {

// What the library's callbacks share.
struct Transfer {
    const std::string& text;
    SmtpCancellation& cancellation;
    const std::function<void(std::uint64_t)>& moved;
    bool staysOnLoopback;
    bool needsLogin;
    std::size_t read = 0;
    SmtpConversation conversation{};
    SmtpFailure failure{};
    bool wentOnWithoutLogin = false;
};

// The library goes on without a login where none is offered. The user has named one.
bool goesOnWithoutLogin(Transfer& transfer) {
    const SmtpConversation& said = transfer.conversation;
    transfer.wentOnWithoutLogin =
        transfer.needsLogin && !said.hasLoggedIn() && said.step() >= SmtpStep::Sender;
    return transfer.wentOnWithoutLogin;
}

std::size_t readText(char* buffer, std::size_t size, std::size_t count, void* user) {
    auto& transfer = *static_cast<Transfer*>(user);
    if (goesOnWithoutLogin(transfer)) return CURL_READFUNC_ABORT;
    const std::size_t taken = std::min(size * count, transfer.text.size() - transfer.read);
    transfer.text.copy(buffer, taken, transfer.read);
    transfer.read += taken;
    return taken;
}

std::size_t hearReply(char* line, std::size_t size, std::size_t count, void* user) {
    static_cast<Transfer*>(user)->conversation.heard({line, size * count});
    return size * count;
}

std::size_t dropBody(char*, std::size_t size, std::size_t count, void*) {
    return size * count;
}

int hearCommand(CURL*, curl_infotype kind, char* line, std::size_t size, void* user) {
    if (kind == CURLINFO_HEADER_OUT) static_cast<Transfer*>(user)->conversation.said({line, size});
    return 0;
}

// Called once a second at least, wherever the library waits. The farewell is said, but its answer not waited
// for.
int goOn(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent) {
    auto& transfer = *static_cast<Transfer*>(user);
    transfer.moved(std::min<std::uint64_t>(static_cast<std::uint64_t>(sent), transfer.text.size()));
    const bool ends = transfer.cancellation.isCancelled() || transfer.conversation.isLeaving() ||
                      goesOnWithoutLogin(transfer);
    return ends ? 1 : 0;
}

curl_socket_t openSocket(void* user, curlsocktype, curl_sockaddr* address) {
    auto& transfer = *static_cast<Transfer*>(user);
    transfer.failure.connected = true;
    if (transfer.staysOnLoopback && !isLoopbackAddress(address->addr)) {
        transfer.failure.leftLoopback = true;
        return CURL_SOCKET_BAD;
    }
    const int socket = ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    if (socket < 0) return CURL_SOCKET_BAD;
    if (transfer.cancellation.add(socket)) return socket;
    ::close(socket);
    return CURL_SOCKET_BAD;
}

int closeSocket(void* user, curl_socket_t socket) {
    static_cast<Transfer*>(user)->cancellation.close(socket);
    return 0;
}

template <class Function>
void setFunction(CURL* easy, CURLoption function, Function* called, CURLoption data, Transfer& transfer) {
    curl_easy_setopt(easy, function, called);
    curl_easy_setopt(easy, data, &transfer);
}

void setServer(CURL* easy, const MailOrder& order) {
    const MailServer& server = order.server;
    const bool tls = server.security == MailSecurity::Tls;
    // The name under which we greet is nobody's: the machine's own is none of the server's business.
    const std::string url = (tls ? "smtps://" : "smtp://") + hostAndPort(server) + "/%5B127.0.0.1%5D";
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    // To another machine nothing is said before it is encrypted. On the loopback it is when the server offers
    // it.
    curl_easy_setopt(easy, CURLOPT_USE_SSL,
                     static_cast<long>(isLoopback(server.host) && !tls ? CURLUSESSL_TRY : CURLUSESSL_ALL));
    curl_easy_setopt(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
    if (!server.caFile.empty()) {
        curl_easy_setopt(easy, CURLOPT_CAINFO, server.caFile.c_str());
        curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
    }
    if (!server.user.empty()) {
        curl_easy_setopt(easy, CURLOPT_USERNAME, server.user.c_str());
        curl_easy_setopt(easy, CURLOPT_PASSWORD, order.password.c_str());
        curl_easy_setopt(easy, CURLOPT_LOGIN_OPTIONS, "AUTH=PLAIN;AUTH=LOGIN");
    }
}

void setLimits(CURL* easy, const SmtpLimits& limits) {
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);  // a name that is still looked up is not waited for
    curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, static_cast<long>(limits.connect.count()));
    curl_easy_setopt(easy, CURLOPT_SERVER_RESPONSE_TIMEOUT, static_cast<long>(limits.silence.count()));
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, static_cast<long>(limits.silence.count()));
}

void setTransfer(CURL* easy, Transfer& transfer) {
    curl_easy_setopt(easy, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(easy, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(transfer.text.size()));
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(easy, CURLOPT_VERBOSE, 1L);  // to the function below, and nowhere else
    setFunction(easy, CURLOPT_DEBUGFUNCTION, hearCommand, CURLOPT_DEBUGDATA, transfer);
    setFunction(easy, CURLOPT_READFUNCTION, readText, CURLOPT_READDATA, transfer);
    setFunction(easy, CURLOPT_WRITEFUNCTION, dropBody, CURLOPT_WRITEDATA, transfer);
    setFunction(easy, CURLOPT_HEADERFUNCTION, hearReply, CURLOPT_HEADERDATA, transfer);
    setFunction(easy, CURLOPT_XFERINFOFUNCTION, goOn, CURLOPT_XFERINFODATA, transfer);
    setFunction(easy, CURLOPT_OPENSOCKETFUNCTION, openSocket, CURLOPT_OPENSOCKETDATA, transfer);
    setFunction(easy, CURLOPT_CLOSESOCKETFUNCTION, closeSocket, CURLOPT_CLOSESOCKETDATA, transfer);
}

MailReport report(Transfer& transfer, const MailOrder& order, const char* detail, CURL* easy) {
    constexpr int kRefusals = 400;  // and above
    const SmtpConversation& said = transfer.conversation;
    if (transfer.failure.code == CURLE_OK || said.isAccepted()) return {.result = MailResult::Sent};
    const bool refused = said.replyCode() >= kRefusals;
    MailReport report;
    report.mayBeSent = said.step() == SmtpStep::Content && !refused && transfer.read == transfer.text.size();
    if (report.mayBeSent)
        report.why = "the server had the whole mail, and did not answer: it may have taken it";
    if (transfer.cancellation.isCancelled()) {
        report.result = MailResult::Cancelled;
        return report;
    }
    curl_easy_getinfo(easy, CURLINFO_OS_ERRNO, &transfer.failure.systemError);
    transfer.failure.detail = detail;
    if (!report.mayBeSent) report.why = smtpProblem(transfer.failure, said, order.server, order.message);
    report.loginRefused = said.step() == SmtpStep::Login && refused;
    return report;
}

}  // namespace

bool isLoopbackAddress(const sockaddr& address) {
    if (address.sa_family == AF_INET) {
        sockaddr_in four{};
        std::memcpy(&four, &address, sizeof four);
        return ntohl(four.sin_addr.s_addr) >> 24U == IN_LOOPBACKNET;
    }
    if (address.sa_family == AF_INET6) {
        sockaddr_in6 six{};
        std::memcpy(&six, &address, sizeof six);
        return IN6_IS_ADDR_LOOPBACK(&six.sin6_addr);
    }
    return false;
}

void SmtpCancellation::cancel() {
    const std::lock_guard lock(mutex_);
    cancelled_ = true;
    for (const int socket : sockets_) ::shutdown(socket, SHUT_RDWR);
}

bool SmtpCancellation::add(int socket) {
    const std::lock_guard lock(mutex_);
    if (cancelled_) return false;
    sockets_.insert(socket);
    return true;
}

void SmtpCancellation::close(int socket) {
    const std::lock_guard lock(mutex_);
    sockets_.erase(socket);
    ::close(socket);
}

MailReport transferMail(const MailOrder& order, const std::string& text, const SmtpLimits& limits,
                        SmtpCancellation& cancellation, const std::function<void(std::uint64_t)>& moved) {
    [[maybe_unused]] static const CURLcode prepared = curl_global_init(CURL_GLOBAL_DEFAULT);
    Transfer transfer{text, cancellation, moved,
                      isLoopback(order.server.host) && order.server.security == MailSecurity::StartTls,
                      !order.server.user.empty()};
    std::array<char, CURL_ERROR_SIZE> detail{};
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> recipients(
        curl_slist_append(nullptr, order.message.recipient.c_str()), curl_slist_free_all);
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> held(curl_easy_init(), curl_easy_cleanup);
    CURL* const easy = held.get();
    if (easy == nullptr || recipients == nullptr)
        return {MailResult::Failed, "there is not enough memory for the mail"};
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, detail.data());
    setServer(easy, order);
    setLimits(easy, limits);
    setTransfer(easy, transfer);
    curl_easy_setopt(easy, CURLOPT_MAIL_FROM, order.message.from.c_str());
    curl_easy_setopt(easy, CURLOPT_MAIL_RCPT, recipients.get());

    transfer.failure.code = curl_easy_perform(easy);
    if (transfer.wentOnWithoutLogin)
        return {.result = MailResult::Failed,
                .why = "the server takes no login with a name and a password",
                .loginRefused = true};
    return report(transfer, order, detail.data(), easy);
}

}  // namespace kestrix::platform
