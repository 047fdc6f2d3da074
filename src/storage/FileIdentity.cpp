#include "storage/FileIdentity.h"

#include <QFile>

#include <sys/stat.h>

#include "storage/ServiceDao.h"

namespace kestrix::storage {

FileIdentity databaseIdentity(const platform::DocumentsFolder& folder) {
    struct stat state {};
    const QByteArray path = QFile::encodeName(folder.filePath(QLatin1String(kDatabaseFile)));
    if (::stat(path.constData(), &state) != 0) return {};
    return {state.st_dev, state.st_ino};
}

}  // namespace kestrix::storage
