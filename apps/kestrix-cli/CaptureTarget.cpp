#include "apps/kestrix-cli/CaptureTarget.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace kestrix::cli {

CaptureTarget::CaptureTarget(std::string path, bool force) : path_(std::move(path)) {
    constexpr int flags = O_WRONLY | O_CLOEXEC;
    descriptor_ = open(path_.c_str(), flags | O_CREAT | O_EXCL, 0666);
    made_ = descriptor_ >= 0;
    if (descriptor_ < 0 && errno == EEXIST) {
        if (!force) {
            problem_ = "the file exists; --force overwrites it";
            return;
        }
        descriptor_ = open(path_.c_str(), flags);
    }
    if (descriptor_ < 0) problem_ = std::generic_category().message(errno);
}

CaptureTarget::~CaptureTarget() {
    if (descriptor_ >= 0) close(descriptor_);
    if (made_ && !output_) unlink(path_.c_str());
}

bool CaptureTarget::isFile(const std::string& path) const {
    std::error_code error;
    return std::filesystem::equivalent(path_, path, error) && !error;
}

bool CaptureTarget::write(const std::string& headerLine, std::string_view bytes) {
    if (!output_) {
        output_ = std::make_unique<Output>(descriptor_);
        // A device has no length; whether it takes bytes shows in the writing.
        if (ftruncate(descriptor_, 0) == 0 || errno == EINVAL) output_->write(headerLine);
    }
    return output_->write(bytes);
}

}  // namespace kestrix::cli
