#include "platform/Module.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibrary>

#include "platform/PrintableText.h"

namespace kestrix::platform {

QString modulePath(const QString& file, const QString& place) {
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString beside = folder.filePath(file);
    return QFile::exists(beside) ? beside : QDir::cleanPath(folder.filePath(place));
}

LoadedModule loadModule(const QString& path, const char* entry, const std::string& without) {
    QLibrary library(path);
    // What it made lives on, and so must it.
    library.setLoadHints(QLibrary::PreventUnloadHint | QLibrary::ResolveAllSymbolsHint);
    LoadedModule module{library.resolve(entry)};
    if (module.entry == nullptr)
        module.problem = printableText("the installation is not complete, " + without + ": " +
                                       library.errorString().toStdString());
    return module;
}

}  // namespace kestrix::platform
