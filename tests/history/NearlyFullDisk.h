#pragma once

#include <sys/resource.h>

#include <csignal>

namespace kestrix::history {

// While it lives, no file can grow beyond so many bytes, as on a full disk.
class NearlyFullDisk {
  public:
    explicit NearlyFullDisk(rlim_t bytes) : signalBefore_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    NearlyFullDisk(const NearlyFullDisk&) = delete;
    NearlyFullDisk& operator=(const NearlyFullDisk&) = delete;
    ~NearlyFullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signalBefore_);
    }

  private:
    rlimit before_{};
    void (*signalBefore_)(int);
};

}  // namespace kestrix::history
