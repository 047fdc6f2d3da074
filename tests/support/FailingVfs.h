#pragma once

#include <sqlite3.h>

#include <functional>
#include <string>
#include <vector>

namespace kestrix::testing {

// While it lives, SQLite's new connections reach their files through this: it passes everything on to the
// default file system, tells what was done, and fails what the test wants to fail. One at a time; the
// connections opened through it must be closed before its end.
class FailingVfs {
  public:
    enum class Call { Open, Read, Write, Truncate, Sync, Delete, Sleep };

    struct Event {
        Call call;
        std::string path;            // empty for Sleep
        bool folderSynced = false;   // Delete: the removal itself is on the disk
        sqlite3_int64 duration = 0;  // Sleep: microseconds; nobody sleeps
    };

    FailingVfs();
    FailingVfs(const FailingVfs&) = delete;
    FailingVfs& operator=(const FailingVfs&) = delete;
    ~FailingVfs();

    // From now on `call` on files whose path ends so answers `code` (SQLITE_FULL, ...) and does nothing.
    void fail(Call call, const std::string& ending, int code);
    void heal() { failures_.clear(); }

    // For tests that write much and are not about the disk: what is told to be on it may still be on its way.
    void skipSyncs() { skipsSyncs_ = true; }

    // Called behind every call that worked.
    using Observer = std::function<void(const Event&)>;
    void observe(Observer observer) { observer_ = std::move(observer); }

  private:
    struct Failure {
        Call call;
        std::string ending;
        int code;
    };
    struct File;
    friend struct VfsCalls;

    // Makes the call, which answers SQLITE_OK when it worked, unless it is to fail.
    template <class Real>
    int pass(const Event& event, Real real);

    sqlite3_vfs* real_;
    sqlite3_vfs own_;
    std::vector<Failure> failures_;
    Observer observer_;
    bool skipsSyncs_ = false;
};

}  // namespace kestrix::testing
