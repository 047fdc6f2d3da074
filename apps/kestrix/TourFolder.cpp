#include "apps/kestrix/TourFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/DocumentsFolder.h"
#include "platform/PrivateFiles.h"

namespace kestrix::tour {
namespace {

constexpr const char* kMark = "kestrix.tour";
// What an earlier tour recorded is not this one's.
constexpr const char* kOfEarlierTour[] = {"kestrix.sqlite", "kestrix.sqlite-journal", "kestrix.ini"};

}  // namespace

bool isTourFolder(const QString& folder) {
    return QFileInfo(QDir(folder).filePath(QLatin1String(kMark))).isFile();
}

std::string prepareFolder(const QString& path) {
    const QDir folder(path);
    const platform::DocumentsFolder documents(path);
    for (const QString& users :
         {platform::DocumentsFolder::standardPath(), platform::DocumentsFolder::simulatedPath()}) {
        if (documents.isSameAs(users)) return path.toStdString() + " is no folder for a tour";
    }
    if (!platform::makePrivateFolder(path)) return "cannot make " + path.toStdString();
    if (!isTourFolder(path)) {
        if (!folder.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
            return path.toStdString() + " holds other files: a tour needs a folder of its own";
        if (!platform::makePrivateFile(folder.filePath(QLatin1String(kMark))))
            return "cannot write into " + path.toStdString();
    }
    for (const char* const name : kOfEarlierTour) {
        const QString file = folder.filePath(QLatin1String(name));
        if (QFileInfo(file).isFile() && !QFile::remove(file)) return "cannot replace " + file.toStdString();
    }
    return {};
}

}  // namespace kestrix::tour
