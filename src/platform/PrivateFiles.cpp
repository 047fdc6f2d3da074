#include "platform/PrivateFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace kestrix::platform {
namespace {

constexpr mode_t kOwnersFile = 0600;
constexpr mode_t kOwnersFolder = 0700;
constexpr mode_t kOthersRights = 0077;

// Closed with this object.
class Descriptor {
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

  private:
    int descriptor_;
};

bool writeAll(int descriptor, const QByteArray& content) {
    qsizetype written = 0;
    while (written < content.size()) {
        const ssize_t count =
            ::write(descriptor, content.data() + written, static_cast<std::size_t>(content.size() - written));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        written += count;
    }
    return true;
}

// A name in the folder is on the disk only when the folder is.
bool synchroniseFolder(const QByteArray& folder) {
    const Descriptor opened(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems do not know how to synchronise a folder; they keep the name with the file.
    return opened && (::fsync(opened.get()) == 0 || errno == EINVAL);
}

QString targetOf(const QString& path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

}  // namespace

bool makePrivateFolder(const QString& path) {
    const QFileInfo folder(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    if (folder.isDir()) return true;
    if (!folder.isRoot() && !makePrivateFolder(folder.absolutePath())) return false;
    return ::mkdir(QFile::encodeName(folder.filePath()).constData(), kOwnersFolder) == 0 ||
           (errno == EEXIST && QFileInfo(folder.filePath()).isDir());
}

bool makePrivateFile(const QString& path) {
    const Descriptor made(
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnersFile));
    return made || errno == EEXIST;
}

bool keepPrivate(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat state {};
    if (::stat(name.constData(), &state) != 0) return errno == ENOENT;
    if ((state.st_mode & kOthersRights) == 0) return true;
    return ::chmod(name.constData(), state.st_mode & 0700) == 0;
}

bool replacePrivateFile(const QString& path, const QByteArray& content) {
    const QString target = targetOf(path);
    const QByteArray folder = QFile::encodeName(QFileInfo(target).absolutePath());
    QByteArray temporary = QFile::encodeName(target) + ".XXXXXX";
    const Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));  // for the owner alone
    if (!file) return false;
    if (writeAll(file.get(), content) && ::fsync(file.get()) == 0 &&
        std::rename(temporary.constData(), QFile::encodeName(target).constData()) == 0)
        return synchroniseFolder(folder);
    const int reason = errno;
    ::unlink(temporary.constData());
    errno = reason;
    return false;
}

FolderLock::FolderLock(const QString& folder)
    : descriptor_(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor_ < 0) return;
    constexpr int kAttempts = 200;
    constexpr useconds_t kPause = 5000;  // microseconds; together a second
    for (int i = 0; i < kAttempts && ::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
         ++i)
        ::usleep(kPause);
}

FolderLock::~FolderLock() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

}  // namespace kestrix::platform
