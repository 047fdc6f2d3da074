#include "apps/kestrix/TourFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "apps/kestrix/TourMoment.h"
#include "platform/DocumentsFolder.h"
#include "platform/PrivateFiles.h"

namespace kestrix::tour {
namespace {

constexpr const char* kMark = "kestrix.tour";
constexpr int kWrongUsage = 2;
// What an earlier tour recorded is not this one's.
constexpr const char* kOfEarlierTour[] = {"kestrix.sqlite", "kestrix.sqlite-journal", "kestrix.ini",
                                          kExportedText, kExportedReport};

// Folders and pictures that a tour would write through a link into what is not its own. Empty: none.
QString linkAmongPictures(const QDir& folder) {
    for (const int scale : kScales) {
        const QFileInfo pictures(folder.filePath(picturesFolder(scale)));
        if (pictures.isSymLink()) return pictures.filePath();
        const QFileInfoList files = QDir(pictures.filePath()).entryInfoList(QDir::AllEntries | QDir::System);
        for (const QFileInfo& file : files) {
            if (file.isSymLink()) return file.filePath();
        }
    }
    return {};
}

}  // namespace

QString picturesFolder(int scale) {
    return QString::number(scale) + u'x';
}

bool isTourFolder(const QString& folder) {
    return QFileInfo(QDir(folder).filePath(QLatin1String(kMark))).isFile();
}

FolderProblem prepareFolder(const QString& path) {
    const QDir folder(path);
    const platform::DocumentsFolder documents(path);
    for (const QString& users :
         {platform::DocumentsFolder::standardPath(), platform::DocumentsFolder::simulatedPath()}) {
        if (documents.isSameAs(users)) return {path.toStdString() + " is no folder for a tour"};
    }
    if (!platform::makePrivateFolder(path)) return {"cannot make " + path.toStdString()};
    if (!isTourFolder(path)) {
        if (!folder.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
            return {path.toStdString() + " holds other files: a tour needs a folder of its own"};
        if (!platform::makePrivateFile(folder.filePath(QLatin1String(kMark))))
            return {"cannot write into " + path.toStdString()};
    }
    if (const QString link = linkAmongPictures(folder); !link.isEmpty())
        return {link.toStdString() + " is a link: a tour draws into folders of its own", kWrongUsage};
    for (const char* const name : kOfEarlierTour) {
        const QString file = folder.filePath(QLatin1String(name));
        const QFileInfo found(file);
        if ((found.isFile() || found.isSymLink()) && !QFile::remove(file))
            return {"cannot replace " + file.toStdString()};
    }
    return {};
}

}  // namespace kestrix::tour
