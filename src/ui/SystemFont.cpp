#include "ui/SystemFont.h"

#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLoggingCategory>

namespace kestrix::ui {
namespace {

Q_LOGGING_CATEGORY(lcFont, "kestrix.font", QtWarningMsg)

}  // namespace

void installSystemFont() {
    const QString family = QStringLiteral("Liberation Sans");
    if (!QFontDatabase::hasFamily(family))
        qCWarning(lcFont, "the font %s is not installed: texts may not fit their places", qPrintable(family));
    for (const char* named : {"Arial", "arial", "Helvetica", "helvetica"})
        QFont::insertSubstitution(QLatin1String(named), family);
    // Every text asks for this font as well, also one that has a size of its own. By such a name and of a
    // size that many texts have, it is the same as theirs: nothing more is looked for and opened.
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(14);
    // The stage scales its texts: hinted to the unscaled size, their tops are cut and their widths are wrong.
    font.setHintingPreference(QFont::PreferNoHinting);
    QGuiApplication::setFont(font);
}

}  // namespace kestrix::ui
