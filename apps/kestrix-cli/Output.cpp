#include "apps/kestrix-cli/Output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>

namespace kestrix::cli {

ExitStatus fail(const std::string& why, ExitStatus status) {
    std::string line = "kestrix-cli: " + why;
    for (char& c : line) {
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
    }
    std::fprintf(stderr, "%s\n", line.c_str());
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

void ignoreClosedPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace kestrix::cli
