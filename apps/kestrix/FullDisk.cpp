#include "apps/kestrix/FullDisk.h"

#include <csignal>

namespace kestrix::tour {

FullDisk::FullDisk() : signalBefore_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit none = before_;
    none.rlim_cur = 0;
    setrlimit(RLIMIT_FSIZE, &none);
}

FullDisk::~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signalBefore_);
}

}  // namespace kestrix::tour
