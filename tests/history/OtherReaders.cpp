#include "tests/history/OtherReaders.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace kestrix::history {

std::string outputOf(const QString& program, const QStringList& arguments, const std::string& fileContent) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("exported"));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(QByteArray::fromStdString(fileContent)), static_cast<qint64>(fileContent.size()));
    file.close();

    QProcess process;
    QStringList given = arguments;
    process.start(program, given.replaceInStrings(QStringLiteral("FILE"), path));
    EXPECT_TRUE(process.waitForFinished(600'000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput().toStdString();
}

std::string pdfInfoOf(const std::string& pdf) {
    return outputOf(QStringLiteral("pdfinfo"), {QStringLiteral("FILE")}, pdf);
}

std::string readByPython(const std::string& script, const std::string& fileContent) {
    return outputOf(
        QStringLiteral("/usr/bin/python3"),
        {QStringLiteral("-I"), QStringLiteral("-c"), QString::fromStdString(script), QStringLiteral("FILE")},
        fileContent);
}

}  // namespace kestrix::history
