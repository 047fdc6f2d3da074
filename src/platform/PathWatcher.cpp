#include "platform/PathWatcher.h"

#include <sys/stat.h>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <utility>

namespace kestrix::platform {
namespace {

std::string identity(const struct stat& status) {
    std::string text;
    for (const auto part :
         {static_cast<long long>(status.st_dev), static_cast<long long>(status.st_ino),
          static_cast<long long>(status.st_mode), static_cast<long long>(status.st_uid),
          static_cast<long long>(status.st_gid), static_cast<long long>(status.st_ctim.tv_sec),
          static_cast<long long>(status.st_ctim.tv_nsec)})
        text += std::to_string(part) + ' ';
    return text;
}

// What stands at the path, and what it leads to. A terminal's changing times are not in it, for every byte
// changes them.
std::string lookAt(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat status {};
    if (lstat(name.constData(), &status) != 0) return {};
    std::string seen = identity(status);
    if (stat(name.constData(), &status) == 0) seen += identity(status);
    return seen;
}

// Every folder that is there on the way to the path, and that of the file which it leads to.
QStringList foldersOf(const QString& path) {
    QStringList folders;
    for (const QString& end : {path, QFileInfo(path).canonicalFilePath()}) {
        QString folder = end;
        while (!folder.isEmpty() && folder != QStringLiteral("/")) {
            folder = QFileInfo(folder).absolutePath();
            if (!folders.contains(folder) && QFileInfo(folder).isDir()) folders += folder;
        }
    }
    return folders;
}

}  // namespace

PathWatcher::PathWatcher(QString path, std::function<void()> changed)
    : path_(std::move(path)), changed_(std::move(changed)), seen_(lookAt(path_)) {
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &watcher_, [this] { look(); });
    watchFolders();
}

void PathWatcher::watchFolders() {
    // A folder may appear while the ones above it are only just being watched.
    for (QStringList wanted = foldersOf(path_);; wanted = foldersOf(path_)) {
        QStringList missing;
        for (const QString& folder : wanted) {
            if (!watcher_.directories().contains(folder)) missing += folder;
        }
        if (missing.isEmpty() || watcher_.addPaths(missing).size() == missing.size()) return;
    }
}

void PathWatcher::look() {
    watchFolders();
    std::string now = lookAt(path_);
    if (now == seen_) return;
    seen_ = std::move(now);
    changed_();
}

}  // namespace kestrix::platform
