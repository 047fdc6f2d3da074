#include "tests/support/FailingVfs.h"

#include <new>

namespace kestrix::testing {

template <class Real>
int FailingVfs::pass(const Event& event, Real real) {
    for (const Failure& failure : failures_) {
        if (failure.call == event.call && event.path.ends_with(failure.ending)) return failure.code;
    }
    const int status = real();
    if (status == SQLITE_OK && observer_) observer_(event);
    return status;
}

// SQLite gives room for it and for the real file behind it.
struct FailingVfs::File {
    sqlite3_file base;
    FailingVfs* vfs;
    const char* path;  // SQLite keeps it while the file is open

    static File& of(sqlite3_file* file) { return *reinterpret_cast<File*>(file); }
    sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
    const sqlite3_io_methods& methods() { return *real()->pMethods; }
    template <class Real>
    int pass(Call call, Real action) const {
        return vfs->pass({call, path}, action);
    }
};

struct VfsCalls {
    using File = FailingVfs::File;
    using Call = FailingVfs::Call;

    static int close(sqlite3_file* file) { return File::of(file).methods().xClose(File::of(file).real()); }
    static int read(sqlite3_file* file, void* to, int amount, sqlite3_int64 offset) {
        File& own = File::of(file);
        return own.pass(Call::Read, [&] { return own.methods().xRead(own.real(), to, amount, offset); });
    }
    static int write(sqlite3_file* file, const void* from, int amount, sqlite3_int64 offset) {
        File& own = File::of(file);
        return own.pass(Call::Write, [&] { return own.methods().xWrite(own.real(), from, amount, offset); });
    }
    static int truncate(sqlite3_file* file, sqlite3_int64 size) {
        File& own = File::of(file);
        return own.pass(Call::Truncate, [&] { return own.methods().xTruncate(own.real(), size); });
    }
    static int sync(sqlite3_file* file, int flags) {
        File& own = File::of(file);
        return own.pass(Call::Sync, [&] {
            return own.vfs->skipsSyncs_ ? SQLITE_OK : own.methods().xSync(own.real(), flags);
        });
    }
    static int fileSize(sqlite3_file* file, sqlite3_int64* size) {
        return File::of(file).methods().xFileSize(File::of(file).real(), size);
    }
    static int lock(sqlite3_file* file, int level) {
        return File::of(file).methods().xLock(File::of(file).real(), level);
    }
    static int unlock(sqlite3_file* file, int level) {
        return File::of(file).methods().xUnlock(File::of(file).real(), level);
    }
    static int checkReservedLock(sqlite3_file* file, int* held) {
        return File::of(file).methods().xCheckReservedLock(File::of(file).real(), held);
    }
    static int fileControl(sqlite3_file* file, int operation, void* argument) {
        return File::of(file).methods().xFileControl(File::of(file).real(), operation, argument);
    }
    static int sectorSize(sqlite3_file* file) {
        return File::of(file).methods().xSectorSize(File::of(file).real());
    }
    static int deviceCharacteristics(sqlite3_file* file) {
        return File::of(file).methods().xDeviceCharacteristics(File::of(file).real());
    }

    static FailingVfs& of(sqlite3_vfs* vfs) { return *static_cast<FailingVfs*>(vfs->pAppData); }

    static int open(sqlite3_vfs* vfs, const char* path, sqlite3_file* file, int flags, int* outFlags) {
        static const sqlite3_io_methods methods = [] {
            sqlite3_io_methods all{};
            all.iVersion = 1;
            all.xClose = close;
            all.xRead = read;
            all.xWrite = write;
            all.xTruncate = truncate;
            all.xSync = sync;
            all.xFileSize = fileSize;
            all.xLock = lock;
            all.xUnlock = unlock;
            all.xCheckReservedLock = checkReservedLock;
            all.xFileControl = fileControl;
            all.xSectorSize = sectorSize;
            all.xDeviceCharacteristics = deviceCharacteristics;
            return all;
        }();
        FailingVfs& own = of(vfs);
        File& opened = *new (file) File{{nullptr}, &own, path == nullptr ? "" : path};
        return own.pass({Call::Open, opened.path}, [&] {
            const int status = own.real_->xOpen(own.real_, path, opened.real(), flags, outFlags);
            if (opened.real()->pMethods != nullptr) opened.base.pMethods = &methods;
            return status;
        });
    }
    static int remove(sqlite3_vfs* vfs, const char* path, int syncFolder) {
        FailingVfs& own = of(vfs);
        return own.pass({Call::Delete, path, syncFolder != 0}, [&] {
            return own.real_->xDelete(own.real_, path, own.skipsSyncs_ ? 0 : syncFolder);
        });
    }
    static int sleep(sqlite3_vfs* vfs, int microseconds) {
        of(vfs).pass({Call::Sleep, {}, false, microseconds}, [] { return SQLITE_OK; });
        return microseconds;
    }
};

FailingVfs::FailingVfs() : real_(sqlite3_vfs_find(nullptr)), own_(*real_) {
    own_.iVersion = 1;
    own_.pNext = nullptr;
    own_.zName = "failing";
    own_.pAppData = this;
    own_.szOsFile = static_cast<int>(sizeof(File)) + real_->szOsFile;
    own_.xOpen = VfsCalls::open;
    own_.xDelete = VfsCalls::remove;
    own_.xSleep = VfsCalls::sleep;
    sqlite3_vfs_register(&own_, 1);
}

FailingVfs::~FailingVfs() {
    sqlite3_vfs_unregister(&own_);
    sqlite3_vfs_register(real_, 1);
}

void FailingVfs::fail(Call call, const std::string& ending, int code) {
    failures_.push_back({call, ending, code});
}

}  // namespace kestrix::testing
