// With a small disk of its own, which a user may mount without rights: nobody else sees it.
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

#include <cerrno>

#include "tests/support/SystemText.h"

namespace kestrix::history {
namespace {

// What the export says on such a disk, and behind it the files that stand there then.
std::string exportedOnto(const QString& path, const char* prepare) {
    const QString script = QStringLiteral("mount -t tmpfs -o size=64k disk \"$1\" && ") +
                           QLatin1String(prepare) + QStringLiteral(" && \"$2\" \"$1\" && ls -A \"$1\"");
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(
        QStringLiteral("unshare"),
        {QStringLiteral("--mount"), QStringLiteral("--map-root-user"), QStringLiteral("sh"),
         QStringLiteral("-c"), script, QStringLiteral("sh"), path, QStringLiteral(KESTRIX_EXPORT_ONTO)});
    EXPECT_TRUE(process.waitForFinished(600'000));
    EXPECT_EQ(process.exitCode(), 0) << "this test needs mount namespaces: unshare --mount --map-root-user";
    return process.readAllStandardOutput().toStdString();
}

TEST(ExportOntoDisk, AFullOneIsToldInOneLineAndLeavesNoHalfFile) {
    const QTemporaryDir disk;
    EXPECT_EQ(exportedOnto(disk.path(), "touch \"$1/other\""),
              "the disk is full (" + testing::systemText(ENOSPC) + ")\nother\n");
}

TEST(ExportOntoDisk, OneThatIsMountedReadOnlyIsToldInOneLine) {
    const QTemporaryDir disk;
    EXPECT_EQ(
        exportedOnto(disk.path(), "mount -o remount,bind,ro \"$1\""),
        "the folder " + disk.path().toStdString() + " is read-only (" + testing::systemText(EROFS) + ")\n");
}

}  // namespace
}  // namespace kestrix::history
