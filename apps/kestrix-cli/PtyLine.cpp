#include "apps/kestrix-cli/PtyLine.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace kestrix::cli {
namespace {

namespace fs = std::filesystem;

// A pseudo terminal has no event for "a client has opened it".
constexpr platform::Scheduler::Duration kLookInterval{20};
constexpr std::size_t kUnsentMost = 4096;
// What a client has to read what is under way when the line is hung up.
constexpr platform::Scheduler::Duration kReadingTime{1000};

std::string systemMessage(int error) {
    return std::generic_category().message(error);
}

// Our links lead to a terminal by a way that nobody else writes: so one that a killed simulator left is known
// as its.
const fs::path kTerminals = "/dev/pts/.";

// One of ours that leads nowhere any more.
bool isLeftBehind(const fs::path& link) {
    std::error_code ignored;
    return fs::read_symlink(link, ignored).parent_path() == kTerminals && !fs::exists(link, ignored);
}

bool isFree(const fs::path& link) {
    std::error_code ignored;
    return !fs::exists(fs::symlink_status(link, ignored)) || isLeftBehind(link);
}

}  // namespace

PtyLine::PtyLine(platform::GeneratedDialer::MakeProducer producers, platform::Scheduler& scheduler)
    : scheduler_(scheduler), tester_(std::move(producers), *this, scheduler) {}

PtyLine::~PtyLine() {
    closeTerminal();
}

std::string PtyLine::open(const std::string& link) {
    std::error_code error;
    link_ = fs::absolute(link, error).lexically_normal();
    if (error) return error.message();
    if (!isFree(link_)) return "there is something of this name, which is left alone";
    std::string problem = openTerminal();
    if (problem.empty()) look();
    return problem;
}

std::string PtyLine::openTerminal() {
    std::error_code error;
    // Before the new terminal exists: it may get the number that the link left behind leads to.
    if (isLeftBehind(link_)) fs::remove(link_, error);
    termios raw{};
    cfmakeraw(&raw);
    int slave = -1;
    std::array<char, 128> name{};
    if (openpty(&master_, &slave, name.data(), &raw, nullptr) != 0) return systemMessage(errno);
    close(slave);  // from now on it hangs up until a client opens it
    fcntl(master_, F_SETFL, O_NONBLOCK);
    fcntl(master_, F_SETFD, FD_CLOEXEC);
    terminal_ = kTerminals / fs::path(name.data()).filename();
    fs::create_symlink(terminal_, link_, error);
    if (!error) return {};
    close(std::exchange(master_, -1));  // without its name nobody finds it
    return error.message();
}

void PtyLine::closeTerminal() {
    if (master_ < 0) return;
    std::error_code ignored;
    if (fs::read_symlink(link_, ignored) == terminal_) fs::remove(link_, ignored);
    close(std::exchange(master_, -1));
    unsent_.clear();
    hangsUpBy_.reset();
}

bool PtyLine::clientIsThere() const {
    pollfd state{master_, POLLIN, 0};
    return poll(&state, 1, 0) >= 0 && (state.revents & POLLHUP) == 0;
}

// Only the client's end tells what waits there. One that is held exclusively cannot be asked.
bool PtyLine::clientHasReadAll() const {
    if (!unsent_.empty()) return false;
    const int slave = ::open(terminal_.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (slave < 0) return false;
    pollfd arrived{slave, POLLIN, 0};
    poll(&arrived, 1, 0);  // brings what is still between the ends to where it is counted
    int waiting = 0;
    const bool known = ioctl(slave, FIONREAD, &waiting) == 0;
    close(slave);
    return known && waiting == 0;
}

void PtyLine::finishHangingUp() {
    flush();
    if (!clientIsThere() || clientHasReadAll() || scheduler_.now() >= *hangsUpBy_) closeTerminal();
}

void PtyLine::look() {
    timer_ = scheduler_.callAfter(kLookInterval, [this] { look(); });
    if (master_ < 0) {
        if (isFree(link_)) openTerminal();  // else, and when it fails, at the next look
        return;
    }
    if (hangsUpBy_) return finishHangingUp();
    const bool there = clientIsThere();
    if (!there) unsent_.clear();
    if (there && !tester_.playing()) tester_.clientCame();
    if (!there && tester_.playing()) tester_.clientLeft();
    if (!there) return;
    std::array<std::uint8_t, 256> heard;  // it listens to nothing
    while (read(master_, heard.data(), heard.size()) > 0) {
    }
    flush();
    tester_.pump();
}

std::size_t PtyLine::room() const {
    return master_ >= 0 && !hangsUpBy_ && unsent_.empty() ? kUnsentMost : 0;
}

void PtyLine::write(std::span<const std::uint8_t> bytes) {
    unsent_.insert(unsent_.end(), bytes.begin(), bytes.end());
    flush();
}

void PtyLine::flush() {
    while (!unsent_.empty()) {
        const ssize_t count = ::write(master_, unsent_.data(), unsent_.size());
        if (count <= 0) return;
        unsent_.erase(unsent_.begin(), unsent_.begin() + count);
    }
}

// The kernel throws away what the client has not read when the line is hung up. So look() waits until he has,
// but not for ever, before it closes the terminal; then it opens the next one.
void PtyLine::hangUp() {
    if (master_ >= 0 && !hangsUpBy_) hangsUpBy_ = scheduler_.now() + kReadingTime;
}

}  // namespace kestrix::cli
