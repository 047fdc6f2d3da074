#include "platform/MailModule.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>

#include "platform/MailModuleEntry.h"
#include "platform/PrintableText.h"

namespace kestrix::platform {

QString mailModulePath() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/" KESTRIX_MAIL_MODULE));
}

MailParts loadMail(const QString& module) {
    QLibrary library(module);
    // What it made lives on, and so must it.
    library.setLoadHints(QLibrary::PreventUnloadHint | QLibrary::ResolveAllSymbolsHint);
    const auto make = reinterpret_cast<MakeMailParts>(library.resolve(kMailModuleEntry));
    MailParts parts;
    if (make == nullptr) {
        parts.problem = printableText("the installation is not complete, no mail can be sent: " +
                                      library.errorString().toStdString());
        return parts;
    }
    make(parts);
    return parts;
}

}  // namespace kestrix::platform
