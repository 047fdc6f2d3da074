#include "tests/cli/Program.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <pty.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <utility>

namespace kestrix::cli {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kPatience{60};
constexpr char kFilling = '\0';  // of a pipe that is full from the start

std::vector<std::string> environmentOf(const std::string& home, const Surroundings& setup) {
    std::vector<std::string> all = setup.environment;  // the first of a name is the one that counts
    // A sanitized program keeps what is freed for a while; its memory is measured here.
    all.emplace_back(
        "ASAN_OPTIONS=detect_stack_use_after_return=1:quarantine_size_mb=1:thread_local_quarantine_size_kb="
        "64");
    const auto isOurs = [](std::string_view entry) {
        for (const std::string_view name : {"HOME=", "XDG_CONFIG_HOME=", "TERM=", "NO_COLOR=", "LANG=",
                                            "LC_ALL=", "QT_LOGGING_RULES=", "QT_MESSAGE_PATTERN="}) {
            if (entry.substr(0, name.size()) == name) return true;
        }
        return false;
    };
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (!isOurs(*entry)) all.emplace_back(*entry);
    }
    all.push_back("HOME=" + home);
    all.push_back("XDG_CONFIG_HOME=" + home + "/config");
    all.emplace_back("LANG=C.UTF-8");
    // Tests wait for those lines; in a terminal they would stand in the display.
    if (!setup.terminal) all.emplace_back("QT_LOGGING_RULES=kestrix.*.info=true");
    return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

struct Ends {
    Descriptor ours;
    Descriptor theirs;
};

Ends makePipe(bool weWrite) {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    Ends made{Descriptor(ends[weWrite ? 1 : 0]), Descriptor(ends[weWrite ? 0 : 1])};
    EXPECT_EQ(fcntl(made.ours.get(), F_SETFL, O_NONBLOCK), 0);
    return made;
}

// Leaves no room in a pipe.
void fill(const Ends& pipe) {
    const int end = pipe.theirs.get();
    EXPECT_EQ(fcntl(end, F_SETFL, O_NONBLOCK), 0);
    const std::string filling(4096, kFilling);
    while (write(end, filling.data(), filling.size()) > 0) {
    }
    EXPECT_EQ(errno, EAGAIN);
    EXPECT_EQ(fcntl(end, F_SETFL, 0), 0);
}

Ends makeTerminal(const Surroundings& setup) {
    winsize size{setup.rows, setup.columns, 0, 0};
    int ours = -1;
    int theirs = -1;
    EXPECT_EQ(openpty(&ours, &theirs, nullptr, nullptr, &size), 0);
    EXPECT_EQ(fcntl(ours, F_SETFL, O_NONBLOCK), 0);
    EXPECT_EQ(fcntl(ours, F_SETFD, FD_CLOEXEC), 0);
    EXPECT_EQ(fcntl(theirs, F_SETFD, FD_CLOEXEC), 0);
    return {Descriptor(ours), Descriptor(theirs)};
}

// What makes root stand above a file's rights and a port's lock; another user has none of it to give up.
void giveUpPrivileges() {
    for (const int privilege : {CAP_SYS_ADMIN, CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH})
        prctl(PR_CAPBSET_DROP, privilege);
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
    if (syscall(SYS_capget, &header, sets.data()) != 0) return;
    for (auto& set : sets) set.inheritable = 0;
    syscall(SYS_capset, &header, sets.data());
}

// In the child between fork and exec: only what is safe there.
[[noreturn]] void become(char* const* arguments, char* const* environment, const std::array<int, 3>& standard,
                         const Surroundings& setup) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGHUP}) std::signal(number, SIG_DFL);
    for (const int number : setup.ignored) std::signal(number, SIG_IGN);
    for (int i = 0; i < 3; ++i) dup2(standard.at(static_cast<std::size_t>(i)), i);
    if (setup.terminal) {
        setsid();
        ioctl(0, TIOCSCTTY, 0);
    }
    for (const int descriptor : setup.closed) close(descriptor);
    if (setup.unprivileged) giveUpPrivileges();
    execve(arguments[0], arguments, environment);
    _exit(127);
}

}  // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) reset(std::exchange(other.descriptor_, -1));
    return *this;
}

void Descriptor::reset(int descriptor) {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = descriptor;
}

Program::Program(std::vector<std::string> arguments, const Surroundings& setup) {
    std::signal(SIGPIPE, SIG_IGN);  // a program that reads no more answers a write
    if (setup.ownSettings && std::find(arguments.begin(), arguments.end(), "--settings") == arguments.end())
        arguments.insert(arguments.begin(), {"--settings", folder() + "/link.ini"});
    arguments.insert(arguments.begin(), KESTRIX_BINARY_DIR "/bin/" + setup.program);
    start(arguments, setup);
}

void Program::start(const std::vector<std::string>& arguments, const Surroundings& setup) {
    std::vector<std::string> ownArguments = arguments;
    std::vector<std::string> ownEnvironment = environmentOf(folder(), setup);
    const std::vector<char*> argumentList = pointersTo(ownArguments);
    const std::vector<char*> environmentList = pointersTo(ownEnvironment);

    Ends input;
    Ends output;
    Ends error;
    if (setup.terminal) {
        output = makeTerminal(setup);
        if (setup.stalled) {
            EXPECT_EQ(tcflow(output.theirs.get(), TCOOFF), 0);
            stoppedTerminal_ = Descriptor(fcntl(output.theirs.get(), F_DUPFD_CLOEXEC, 0));
        }
    } else {
        input = makePipe(true);
        error = makePipe(false);
        output = makePipe(false);
        EXPECT_EQ(fcntl(input.theirs.get(), F_SETFL, setup.waitingInput ? 0 : O_NONBLOCK), 0);
        if (setup.stalled) {
            fill(output);
            fill(error);
        }
        if (setup.readerGone) output.ours.reset();
        if (!setup.output.empty()) {
            output = {Descriptor(), Descriptor(open(setup.output.c_str(), O_WRONLY | O_CLOEXEC))};
            EXPECT_TRUE(output.theirs.isOpen()) << setup.output;
        }
    }
    stalled_ = setup.stalled;
    const int terminal = output.theirs.get();
    const std::array<int, 3> standard{setup.terminal ? terminal : input.theirs.get(), terminal,
                                      setup.terminal ? terminal : error.theirs.get()};
    child_ = fork();
    if (child_ == 0) become(argumentList.data(), environmentList.data(), standard, setup);
    EXPECT_GT(child_, 0);
    end_ = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, child_, 0)));
    EXPECT_TRUE(end_.isOpen());
    input_ = std::move(input.ours);
    output_ = std::move(output.ours);
    error_ = std::move(error.ours);
}

Program::~Program() {
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
}

void Program::signal(int number) const {
    ASSERT_GT(child_, 0) << "it has ended";
    EXPECT_EQ(kill(child_, number), 0);
}

void Program::limitFileSize(unsigned long bytes) const {
    rlimit limit{};
    EXPECT_EQ(prlimit(child_, RLIMIT_FSIZE, nullptr, &limit), 0);
    limit.rlim_cur = bytes;
    EXPECT_EQ(prlimit(child_, RLIMIT_FSIZE, &limit, nullptr), 0);
}

void Program::resize(unsigned short rows, unsigned short columns) const {
    const winsize size{rows, columns, 0, 0};
    EXPECT_EQ(ioctl(output_.get(), TIOCSWINSZ, &size), 0);
}

// What is there now; closes the descriptor at its end.
void Program::take(Descriptor& from, std::string& text) {
    std::array<char, 65536> piece;
    while (from.isOpen()) {
        const ssize_t count = read(from.get(), piece.data(), piece.size());
        if (count > 0) {
            const std::size_t before = text.size();
            text.append(piece.data(), static_cast<std::size_t>(count));
            text.erase(std::remove(text.begin() + static_cast<std::ptrdiff_t>(before), text.end(), kFilling),
                       text.end());
        } else if (count < 0 && errno == EAGAIN) {
            return;
        } else {
            from.reset();
        }
    }
}

void Program::takeAll() {
    if (stalled_) return;
    take(output_, outputText_);
    take(error_, errorText_);
}

void Program::startReading() {
    if (stoppedTerminal_.isOpen()) {
        EXPECT_EQ(tcflow(stoppedTerminal_.get(), TCOON), 0);
    }
    stoppedTerminal_.reset();
    stalled_ = false;
}

bool Program::ended() {
    if (child_ <= 0) return true;
    int status = 0;
    if (waitpid(child_, &status, WNOHANG) != child_) return false;
    child_ = -1;
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    takeAll();
    return true;
}

bool Program::takeUntil(const std::function<bool()>& done, short inputEvents) {
    const auto limit = Clock::now() + kPatience;
    while (true) {
        takeAll();
        if (done()) return true;
        if (ended()) return done();
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(limit - Clock::now()).count();
        if (left <= 0) {
            ADD_FAILURE() << "the program hangs; it said: " << outputText_.substr(0, 4096) << errorText_;
            return false;
        }
        std::array<pollfd, 4> events{{{inputEvents != 0 ? input_.get() : -1, inputEvents, 0},
                                      {stalled_ ? -1 : output_.get(), POLLIN, 0},
                                      {stalled_ ? -1 : error_.get(), POLLIN, 0},
                                      {end_.get(), POLLIN, 0}}};
        poll(events.data(), events.size(), static_cast<int>(left));
        inputReady_ = events[0].revents != 0;
    }
}

bool Program::send(std::string_view input) {
    while (!input.empty()) {
        const ssize_t count = write(input_.get(), input.data(), input.size());
        if (count > 0) {
            input.remove_prefix(static_cast<std::size_t>(count));
            continue;
        }
        if (errno != EAGAIN) return false;
        inputReady_ = false;
        if (!takeUntil([this] { return inputReady_; }, POLLOUT)) return false;
    }
    return true;
}

bool Program::waitUntil(const std::function<bool()>& condition) {
    return takeUntil(condition, 0);
}

bool Program::waitForOutput(std::string_view text) {
    return waitUntil([this, text] { return outputText_.find(text) != std::string::npos; });
}

bool Program::waitForError(std::string_view text) {
    return waitUntil([this, text] { return errorText_.find(text) != std::string::npos; });
}

int Program::wait() {
    endInput();
    return waitForEnd();
}

int Program::waitForEnd() {
    takeUntil([this] { return child_ <= 0; }, 0);
    return status_;
}

// A set of signals as the system shows it: a hexadecimal number, signal 1 in its lowest bit.
bool Program::hasSignal(const char* set, int signal) const {
    const std::string status = contentOf("/proc/" + std::to_string(child_) + "/status");
    const auto place = status.find(set);
    if (place == std::string::npos) return false;
    const auto bits = std::strtoull(status.c_str() + place + std::strlen(set), nullptr, 16);
    return (bits >> (signal - 1) & 1U) != 0;
}

bool Program::waitUntilItCatches(int signal) {
    const auto limit = Clock::now() + kPatience;
    while (Clock::now() < limit && !ended()) {
        if (hasSignal("SigCgt:", signal)) return true;
        sched_yield();
    }
    return false;
}

bool Program::ignores(int signal) const {
    return hasSignal("SigIgn:", signal);
}

long Program::peakKilobytes() const {
    const std::string status = contentOf("/proc/" + std::to_string(child_) + "/status");
    const auto place = status.find("VmHWM:");
    EXPECT_NE(place, std::string::npos);
    return place == std::string::npos ? -1 : std::strtol(status.c_str() + place + 6, nullptr, 10);
}

bool Program::waitUntilItRests() {
    constexpr int kLooks = 2000;
    const auto limit = Clock::now() + kPatience;
    int resting = 0;
    while (resting < kLooks && Clock::now() < limit) {
        const std::string stat = contentOf("/proc/" + std::to_string(child_) + "/stat");
        const auto state = stat.rfind(") ");
        resting = state != std::string::npos && stat[state + 2] == 'S' ? resting + 1 : 0;
        sched_yield();
    }
    return resting == kLooks;
}

Result run(std::vector<std::string> arguments, std::string_view input, const Surroundings& setup) {
    Program program(std::move(arguments), setup);
    program.send(input);
    const int status = program.wait();
    return {status, program.output(), program.error()};
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> complaintsIn(const std::string& error) {
    std::vector<std::string> lines = linesOf(error);
    std::erase_if(lines, [](const std::string& line) { return line.rfind("info kestrix.", 0) == 0; });
    return lines;
}

std::string contentOf(const std::string& path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void writeFile(const std::string& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    EXPECT_TRUE(file.good()) << path;
}

}  // namespace kestrix::cli
