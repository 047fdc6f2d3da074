#include "apps/kestrix-cli/Output.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "apps/common/PrintableText.h"

namespace kestrix::cli {
namespace {

// Once so much of what waits was taken, its room is given back.
constexpr std::size_t kTakenMost = 65'536;

}  // namespace

Output::~Output() {
    if (own_ >= 0) close(own_);
    if (madeNonBlocking_) fcntl(given_, F_SETFL, fcntl(given_, F_GETFL) & ~O_NONBLOCK);
}

// Only pipes and terminals have a reader who can let us wait. They are opened a second time: whether one
// waits is a property of the opened file, which other programs share with us.
void Output::prepare() {
    way_ = Way::Plain;
    struct stat status {};
    if (fstat(given_, &status) != 0) return;
    if (S_ISSOCK(status.st_mode)) way_ = Way::Socket;
    const bool mayWait = S_ISFIFO(status.st_mode) || (S_ISCHR(status.st_mode) && isatty(given_) == 1);
    const int flags = fcntl(given_, F_GETFL);
    if (!mayWait || (flags & O_NONBLOCK) != 0) return;
    const std::string path = "/proc/self/fd/" + std::to_string(given_);
    own_ = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (own_ >= 0 || errno == ENXIO) return;  // ENXIO: the reader has gone, which the first write tells
    madeNonBlocking_ = fcntl(given_, F_SETFL, flags | O_NONBLOCK) == 0;
}

// As many as are taken now.
std::size_t Output::send(std::string_view bytes) {
    std::size_t total = 0;
    while (error_ == 0 && total < bytes.size()) {
        const std::string_view rest = bytes.substr(total);
        const ssize_t count =
            way_ == Way::Socket ? ::send(descriptor(), rest.data(), rest.size(), MSG_DONTWAIT | MSG_NOSIGNAL)
                                : ::write(descriptor(), rest.data(), rest.size());
        if (count >= 0) {
            total += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            break;
        } else if (errno != EINTR) {
            error_ = errno;
        }
    }
    taken_ += total;
    return total;
}

bool Output::write(std::string_view bytes) {
    if (way_ == Way::Unknown) prepare();
    if (!good()) return false;
    const bool waited = waiting() > 0;
    if (!waited) bytes.remove_prefix(send(bytes));
    if (!good()) return false;
    unsent_.append(bytes);
    if (!waited && waiting() > 0 && waitingChanged) waitingChanged();
    return true;
}

bool Output::line(std::string_view text) {
    return write(app::printable(text) + "\n");
}

bool Output::push() {
    if (waiting() == 0) return true;
    sent_ += send(std::string_view(unsent_).substr(sent_));
    if (!good() || sent_ == unsent_.size()) {
        unsent_.clear();
        sent_ = 0;
        if (waitingChanged) waitingChanged();
        return true;
    }
    if (sent_ >= kTakenMost) {
        unsent_.erase(0, sent_);
        sent_ = 0;
    }
    return false;
}

bool Output::closed() const {
    return error_ == EPIPE || error_ == ECONNRESET;
}

std::string Output::problem() const {
    return good() || closed() ? std::string() : std::generic_category().message(error_);
}

void ErrorOutput::line(std::string_view text) {
    output_.push();
    if (output_.waiting() < kMostWaiting) output_.line(text);
}

ErrorOutput& standardError() {
    static auto* output = new ErrorOutput;  // never destroyed: the log may be written to to the very end
    return *output;
}

void fillClosedDescriptors() {
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
        if (fcntl(standard, F_GETFD) >= 0) continue;
        // The lowest free one is this one. Nothing can be written to what is opened for reading.
        if (open("/dev/null", standard == STDOUT_FILENO ? O_RDONLY : O_RDWR) < 0) return;
    }
}

void letFailedWritesAnswer() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace kestrix::cli
