#include "platform/DocumentsFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "platform/Log.h"
#include "platform/PrivateFiles.h"

namespace kestrix::platform {
namespace {

QString inDocuments(const char* name) {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + u'/' + QLatin1String(name);
}

// The path without links; of a folder that is not there, as it is written.
QString canonical(const QString& path) {
    const QString found = QFileInfo(path).canonicalFilePath();
    return found.isEmpty() ? QDir::cleanPath(QFileInfo(path).absoluteFilePath()) : found;
}

}  // namespace

QString DocumentsFolder::standardPath() {
    return inDocuments("Kestrix");
}

QString DocumentsFolder::simulatedPath() {
    return inDocuments("Kestrix simulated");
}

QString DocumentsFolder::filePath(const QString& name) const {
    return QDir(path_).filePath(name);
}

bool DocumentsFolder::isSameAs(const QString& other) const {
    return canonical(path_) == canonical(other);
}

bool DocumentsFolder::ensure() const {
    if (!makePrivateFolder(path_)) {
        qCWarning(lcSettings).noquote() << "documents folder" << path_ << "cannot be made";
        return false;
    }
    const bool standard = isSameAs(standardPath()) || isSameAs(simulatedPath());
    if (standard && !QFileInfo(path_).isSymLink()) keepPrivate(path_);
    return true;
}

}  // namespace kestrix::platform
