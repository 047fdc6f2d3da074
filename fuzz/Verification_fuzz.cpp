// Any file at all either is verified or has a problem, in one line: it ends, says the same twice, and counts
// no more than there is.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "apps/kestrix-cli/Verification.h"

namespace {

using kestrix::cli::Verification;

constexpr std::size_t kMost = 64 * 1024;

void require(bool holds) {
    if (!holds) std::abort();
}

// In memory, by a name of this process.
class File {
  public:
    File() : descriptor_(open(path_.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)) {
        require(descriptor_ >= 0);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        close(descriptor_);
        unlink(path_.c_str());
    }
    const std::string& path() const { return path_; }
    void write(const std::uint8_t* data, std::size_t size) const {
        require(ftruncate(descriptor_, 0) == 0);
        require(pwrite(descriptor_, data, size, 0) == static_cast<ssize_t>(size));
    }
    std::string content() const {
        std::string bytes(2 * kMost, '\0');
        const ssize_t size = pread(descriptor_, bytes.data(), bytes.size(), 0);
        require(size >= 0);
        bytes.resize(static_cast<std::size_t>(size));
        return bytes;
    }

  private:
    const std::string path_ = "/dev/shm/kestrix-verification-fuzz-" + std::to_string(getpid());
    const int descriptor_;
};

bool isOneLine(const std::string& text) {
    return !text.empty() && std::none_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < ' '; });
}

void check(const Verification& result) {
    if (!result.problem.empty()) {
        require(isOneLine(result.problem));
        require(result.findings.empty() && result.measurements == 0);
        return;
    }
    for (const std::int64_t count : {result.derived, result.older, result.simulated, result.replayed})
        require(count >= 0 && count <= result.measurements);
    require(result.derived + result.older <= result.measurements);
    require(result.head.empty() || result.head.size() == 64);
    for (const Verification::Finding& finding : result.findings) require(isOneLine(finding.text));
    require(result.chainWhole || !result.findings.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > kMost) return 0;
    static const File file;
    file.write(data, size);
    const Verification whole = kestrix::cli::verifyDatabase(file.path());
    check(whole);
    const Verification again = kestrix::cli::verifyDatabase(file.path());
    require(whole.problem == again.problem && whole.findings.size() == again.findings.size());
    // In a damaged tree the next row may be another one than the next that is looked for.
    const Verification inSlices = kestrix::cli::verifyDatabase(file.path(), {.rows = 1});
    check(inSlices);
    if (whole.isClean() && inSlices.isClean()) {
        require(whole.measurements == inSlices.measurements && whole.derived == inSlices.derived);
        require(whole.older == inSlices.older && whole.head == inSlices.head);
    }
    require(file.content() == std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
