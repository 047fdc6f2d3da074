#include "apps/kestrix-cli/CaptureTarget.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>

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

std::string CaptureTarget::open(const Runner& runner) {
    while (!openOnce()) {
        struct stat status {};
        const int error = errno;
        const bool isPipe = stat(path_.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
        if (error == EEXIST) return "the file exists; --force overwrites it";
        if (error != ENXIO || !isPipe) return std::generic_category().message(error);
        if (!runner.pause(kLookForReader)) return {};
    }
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
        if (ftruncate(descriptor_, 0) != 0 && errno != EINVAL) {
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
