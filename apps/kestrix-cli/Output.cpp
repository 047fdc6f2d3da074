#include "apps/kestrix-cli/Output.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>

#include "apps/kestrix-cli/TerminalText.h"

namespace kestrix::cli {

ExitStatus fail(const std::string& why, ExitStatus status) {
    std::fprintf(stderr, "kestrix-cli: %s\n", printable(why).c_str());
    return status;
}

bool Output::write(std::string_view text) {
    while (error_ == 0 && !text.empty()) {
        const ssize_t count = ::write(descriptor_, text.data(), text.size());
        if (count >= 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {  // somebody made our output non-blocking
            pollfd ready{descriptor_, POLLOUT, 0};
            poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            error_ = errno;
        }
    }
    return error_ == 0;
}

ExitStatus Output::status() const {
    if (error_ == 0 || error_ == EPIPE) return kDone;
    return fail("the output cannot be written: " + std::generic_category().message(error_));
}

void fillClosedDescriptors() {
    int descriptor = 0;
    do {
        descriptor = open("/dev/null", O_RDWR);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor > STDERR_FILENO) close(descriptor);
}

void ignoreClosedPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace kestrix::cli
