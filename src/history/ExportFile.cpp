#include "history/ExportFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace kestrix::history {
namespace {

constexpr mode_t kOwnersAlone = 0600;

struct ExportReason {
    int systemError;
    const char* text;  // %1 is the folder, %2 the file
};

constexpr const char* kFull = QT_TRANSLATE_NOOP("Export", "the disk is full");
constexpr const char* kMayNot = QT_TRANSLATE_NOOP("Export", "the folder %1 may not be written by this user");
constexpr const char* kNotItsOwn = QT_TRANSLATE_NOOP("Export", "%2 is there and is no file of Kestrix");
constexpr const char* kCannot = QT_TRANSLATE_NOOP("Export", "%2 cannot be written");

constexpr std::array kExportReasons{
    ExportReason{ENOSPC, kFull},
    ExportReason{EDQUOT, kFull},
    ExportReason{EFBIG, kFull},
    ExportReason{EACCES, kMayNot},
    ExportReason{EPERM, kMayNot},
    ExportReason{EROFS, QT_TRANSLATE_NOOP("Export", "the folder %1 is read-only")},
    ExportReason{ENOENT, QT_TRANSLATE_NOOP("Export", "there is no folder %1")},
    ExportReason{ENOTDIR, QT_TRANSLATE_NOOP("Export", "%1 is no folder")},
    ExportReason{EEXIST, QT_TRANSLATE_NOOP("Export", "%2 is there already")},
};

// A file in a folder that is held open meanwhile. What it answers is whether it worked; the reason is kept.
class ExportFile {
  public:
    ExportFile(const QString& folder, const QString& name)
        : folderPath_(folder),
          name_(name),
          folder_(::open(QFile::encodeName(folder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {
        if (folder_ < 0) fail(errno);
    }
    ExportFile(const ExportFile&) = delete;
    ExportFile& operator=(const ExportFile&) = delete;
    ~ExportFile() {
        close();
        if (folder_ >= 0) ::close(folder_);
    }

    // flags: O_EXCL, or none.
    void open(int flags) {
        if (!outcome_.done) return;
        // Without waiting, should it be a pipe; emptied only when it is known to be a file of its own.
        file_ = ::openat(folder_, encodedName().constData(),
                         O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | flags,
                         kOwnersAlone);
        if (file_ < 0) return isOther(errno) ? fail(kNotItsOwn) : fail(errno);
        struct stat state {};
        if (::fstat(file_, &state) != 0) return fail(errno);
        if (!S_ISREG(state.st_mode) || state.st_nlink != 1) return fail(kNotItsOwn);
        mine_ = true;
        ::fchmod(file_, kOwnersAlone);  // where the file system knows rights
        if (::ftruncate(file_, 0) != 0) fail(errno);
    }

    storage::Outcome write(std::string_view bytes) {
        while (outcome_.done && !bytes.empty()) {
            const ssize_t count = ::write(file_, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0)
                fail(count < 0 ? errno : ENOSPC);
            else
                bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return outcome_;
    }

    // Closes it; when anything has failed, here or in what was to be written, it goes.
    storage::Outcome end(storage::Outcome written) {
        if (outcome_.done && !written.done) outcome_ = std::move(written);
        if (!close()) fail(errno);
        if (!outcome_.done && mine_) ::unlinkat(folder_, encodedName().constData(), 0);
        return outcome_;
    }

    bool isOpen() const { return outcome_.done; }

  private:
    QByteArray encodedName() const { return QFile::encodeName(name_); }

    bool close() {
        const int closed = std::exchange(file_, -1);
        return closed < 0 || ::close(closed) == 0 || errno == EINTR;
    }

    // A link, a pipe, a folder.
    static bool isOther(int systemError) {
        return systemError == ELOOP || systemError == ENXIO || systemError == EISDIR;
    }

    void fail(int systemError) {
        const auto found =
            std::find_if(kExportReasons.begin(), kExportReasons.end(),
                         [&](const ExportReason& reason) { return reason.systemError == systemError; });
        fail(found != kExportReasons.end() ? found->text : kCannot,
             " (" + std::generic_category().message(systemError) + ")");
    }
    // The first reason counts.
    void fail(const char* text, const std::string& systemWords = {}) {
        if (!outcome_.done) return;
        QString words = QCoreApplication::translate("Export", text);
        words.replace(QLatin1String("%1"), folderPath_);
        words.replace(QLatin1String("%2"), name_);
        outcome_ = {false, words.toStdString() + systemWords, 0};
    }

    QString folderPath_;
    QString name_;
    int folder_;
    int file_ = -1;
    bool mine_ = false;  // the file of this name is the one that is written
    storage::Outcome outcome_;
};

storage::Outcome written(ExportFile& file, int flags, const FileContent& write) {
    file.open(flags);
    storage::Outcome content;
    if (file.isOpen()) content = write([&file](std::string_view bytes) { return file.write(bytes); });
    return file.end(std::move(content));
}

}  // namespace

storage::Outcome writeFileInFolder(const platform::DocumentsFolder& folder, const std::string& name,
                                   const FileContent& write) {
    if (std::string why = folder.whyKeptOut(); !why.empty()) return {false, std::move(why), 0};
    ExportFile file(folder.path(), QString::fromStdString(name));
    return written(file, 0, write);
}

storage::Outcome writeNewFile(const QString& path, const FileContent& write) {
    const QFileInfo target(path);
    ExportFile file(target.path(), target.fileName());
    return written(file, O_EXCL, write);
}

}  // namespace kestrix::history
