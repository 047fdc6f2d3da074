#include "apps/kestrix-cli/CaptureTarget.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "platform/CaptureFile.h"

namespace kestrix::cli {
namespace {

// The system does not tell when somebody opens a pipe to read it.
constexpr std::chrono::milliseconds kLookForReader{20};

bool isSameFile(int descriptor, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return fstat(descriptor, &opened) == 0 && lstat(path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

// Whether nobody loses anything but a capture when what is opened for writing is replaced: a pipe and a
// device keep nothing, an empty file holds nothing. What cannot be read is somebody's.
bool mayBeReplaced(int descriptor, const std::string& path) {
    struct stat written {};
    if (fstat(descriptor, &written) != 0) return false;
    if (!S_ISREG(written.st_mode) || written.st_size == 0) return true;
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (reader < 0) return false;
    struct stat read {};
    const bool same =
        fstat(reader, &read) == 0 && read.st_dev == written.st_dev && read.st_ino == written.st_ino;
    std::array<char, platform::kCaptureHeaderMax> text;
    const ssize_t length = same ? pread(reader, text.data(), text.size(), 0) : -1;
    close(reader);
    return length > 0 &&
           platform::readCaptureStart({text.data(), static_cast<std::size_t>(length)}).header.has_value();
}

}  // namespace

CaptureTarget::~CaptureTarget() {
    output_.reset();
    if (descriptor_ < 0) return;
    if (made_ && !begun_ && isSameFile(descriptor_, path_)) unlink(path_.c_str());
    close(descriptor_);
}

// Without waiting: for a pipe that nobody reads, errno is ENXIO.
bool CaptureTarget::openOnce() {
    constexpr int flags = O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    descriptor_ = ::open(path_.c_str(), flags | O_CREAT | O_EXCL, 0666);
    made_ = descriptor_ >= 0;
    if (descriptor_ < 0 && errno == EEXIST && force_) descriptor_ = ::open(path_.c_str(), flags);
    return descriptor_ >= 0;
}

// What the caller has made of it is the caller's: nothing in it is replaced.
std::string CaptureTarget::openOutput() {
    if (isatty(STDOUT_FILENO) == 1) return "it is a terminal, which raw bytes would garble";
    descriptor_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    if (descriptor_ < 0) return std::generic_category().message(errno);
    output_ = std::make_unique<Output>(descriptor_);
    return {};
}

std::string CaptureTarget::open(const Runner& runner) {
    if (isOutput()) return openOutput();
    while (!openOnce()) {
        struct stat status {};
        const int error = errno;
        const bool isPipe = stat(path_.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
        if (error == EEXIST) return "the file exists; --force overwrites it";
        if (error != ENXIO || !isPipe) return std::generic_category().message(error);
        if (!runner.pause(kLookForReader)) return {};
    }
    if (!made_ && !mayBeReplaced(descriptor_, path_))
        return "the file is no capture of Kestrix; it is left as it is";
    output_ = std::make_unique<Output>(descriptor_);
    return {};
}

bool CaptureTarget::isFile(const std::string& path) const {
    std::error_code error;
    return std::filesystem::equivalent(path_, path, error) && !error;
}

bool CaptureTarget::write(const std::string& headerLine, std::string_view bytes) {
    if (!begun_) {
        begun_ = true;
        headerBytes_ = headerLine.size();
        // A pipe and a device have no length. A file that keeps its old bytes must not get new ones among
        // them.
        if (!isOutput() && ftruncate(descriptor_, 0) != 0 && errno != EINVAL) {
            output_->fail(errno);
            return false;
        }
        output_->write(headerLine);
    }
    return output_->write(bytes);
}

std::uint64_t CaptureTarget::kept() const {
    const std::uint64_t taken = output_ ? output_->taken() : 0;
    return taken - std::min<std::uint64_t>(taken, headerBytes_);
}

}  // namespace kestrix::cli
