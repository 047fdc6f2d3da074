// What docs/window.md and the manual page say of the window's program.
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <string>

#include "apps/kestrix/TourStops.h"

namespace kestrix::tour {
namespace {

QString contentOf(const char* name) {
    QFile file(QStringLiteral(KESTRIX_SOURCE_DIR "/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(file.readAll());
}

QStringList optionsOfTheProgram() {
    QProcess program;
    program.start(QStringLiteral(KESTRIX_BINARY_DIR "/bin/kestrix"), {QStringLiteral("--help")});
    EXPECT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), 0);
    static const QRegularExpression option(QStringLiteral("^ +(?:-h,)?--([a-z]+)"),
                                           QRegularExpression::MultilineOption);
    QStringList names;
    for (auto at = option.globalMatch(QString::fromUtf8(program.readAllStandardOutput())); at.hasNext();)
        names << at.next().captured(1);
    return names;
}

TEST(WindowDocument, EveryOptionIsDescribed) {
    const QString page = contentOf("docs/window.md");
    const QString manual = contentOf("packaging/kestrix.1");
    const QStringList names = optionsOfTheProgram();
    EXPECT_GE(names.size(), 6);
    for (const QString& name : names) {
        EXPECT_TRUE(page.contains(QStringLiteral("`--") + name)) << name.toStdString();
        EXPECT_TRUE(manual.contains(QStringLiteral("-%1").arg(name))) << name.toStdString();
    }
}

TEST(WindowDocument, EveryStateOfTheTourIsShownAtBothScales) {
    const QString page = contentOf("docs/window.md");
    for (const std::string& picture : pictures()) {
        for (const char* scale : {"1x", "3x"}) {
            const QString name = QStringLiteral("pictures/live/%1/%2.png")
                                     .arg(QLatin1String(scale), QString::fromStdString(picture));
            EXPECT_TRUE(page.contains(QStringLiteral("[%1](%2)").arg(QLatin1String(scale), name)))
                << name.toStdString();
            EXPECT_TRUE(QFile::exists(QStringLiteral(KESTRIX_SOURCE_DIR "/docs/") + name))
                << name.toStdString();
        }
    }
}

}  // namespace
}  // namespace kestrix::tour
