#pragma once

#include <sys/resource.h>

namespace kestrix::tour {

// While it lives, no file of this process can grow, as on a full disk: who writes is told so by the system.
class FullDisk {
  public:
    FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk();

  private:
    rlimit before_{};
    void (*signalBefore_)(int);
};

}  // namespace kestrix::tour
