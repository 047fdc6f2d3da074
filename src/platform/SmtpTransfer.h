#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <set>
#include <string>

#include "platform/Mail.h"

struct sockaddr;

namespace kestrix::platform {

struct SmtpLimits {
    std::chrono::seconds connect{15};  // until the server takes mails: name, connection, encryption, login
    std::chrono::seconds silence{30};  // without a byte in either direction
};

// Ends a transfer from another thread. It knows the transfer's sockets and shuts them down, so that whoever
// waits at one returns at once.
class SmtpCancellation {
  public:
    void cancel();
    bool isCancelled() const { return cancelled_; }

    // For the transfer: a socket of its own, before it is connected; false when it is cancelled already.
    bool add(int socket);
    void close(int socket);

  private:
    std::atomic<bool> cancelled_{false};
    std::mutex mutex_;
    std::set<int> sockets_;
};

// Whether a connection to this address stays on this machine. Where nothing need be encrypted it is asked of
// each address that the server's name leads to.
bool isLoopbackAddress(const sockaddr& address);

// Brings a message, as it stands on the wire, to its server. It blocks. order.message needs addresses only.
// moved: how many bytes have gone, in between. No signal may reach the thread: a connection that has ended
// raises one.
MailReport transferMail(const MailOrder& order, const std::string& text, const SmtpLimits& limits,
                        SmtpCancellation& cancellation, const std::function<void(std::uint64_t)>& moved);

}  // namespace kestrix::platform
