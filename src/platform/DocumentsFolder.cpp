#include "platform/DocumentsFolder.h"

#include <QDir>
#include <QStandardPaths>

#include "platform/Log.h"

namespace kestrix::platform {

QString DocumentsFolder::standardPath() {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QStringLiteral("/Kestrix");
}

QString DocumentsFolder::filePath(const QString& name) const {
    return QDir(path_).filePath(name);
}

bool DocumentsFolder::ensure() const {
    if (QDir().mkpath(path_)) return true;
    qCWarning(lcSettings).noquote() << "documents folder" << path_ << "cannot be made";
    return false;
}

}  // namespace kestrix::platform
