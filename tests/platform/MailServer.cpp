#include "tests/platform/MailServer.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "tests/support/EventLoop.h"

namespace kestrix::testing {
namespace {

const QTemporaryDir& certificates() {
    static const QTemporaryDir folder;
    return folder;
}

void openssl(const QString& arguments) {
    QProcess process;
    process.setWorkingDirectory(certificates().path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("openssl"), arguments.split(u' '));
    ASSERT_TRUE(process.waitForFinished(-1));
    ASSERT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
}

void makeAuthority(const QString& name) {
    openssl(
        QStringLiteral("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 30 -subj /CN=%1 "
                       "-keyout %1.key -out %1.pem")
            .arg(name));
}

void makeCertificate(const QString& name, const QString& names) {
    openssl(
        QStringLiteral("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 30 -subj /CN=%1 "
                       "-addext subjectAltName=%2 -addext basicConstraints=critical,CA:FALSE "
                       "-CA authority.pem -CAkey authority.key -keyout %1.key -out %1.pem")
            .arg(name, names));
    QFile both(certificates().filePath(name + QStringLiteral(".both")));
    ASSERT_TRUE(both.open(QIODevice::WriteOnly));
    for (const char* ending : {".pem", ".key"}) {
        QFile one(certificates().filePath(name + QLatin1String(ending)));
        ASSERT_TRUE(one.open(QIODevice::ReadOnly));
        both.write(one.readAll());
    }
}

QString made(const QString& file) {
    [[maybe_unused]] static const bool once = [] {
        makeAuthority(QStringLiteral("authority"));
        makeAuthority(QStringLiteral("stranger"));
        makeCertificate(QStringLiteral("localhost"), QStringLiteral("DNS:localhost,IP:127.0.0.1"));
        makeCertificate(QStringLiteral("other"), QStringLiteral("DNS:other.example"));
        return true;
    }();
    return certificates().filePath(file);
}

}  // namespace

MailServerProgram::MailServerProgram(const QStringList& options) {
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(
        QStringLiteral("/usr/bin/python3"),
        QStringList{QStringLiteral(KESTRIX_SOURCE_DIR "/tests/platform/mail_server.py")} + options);
    const QByteArray line = nextLine();
    EXPECT_TRUE(line.startsWith("PORT ")) << "no mail server: " << line.toStdString();
    port_ = line.mid(5).toUShort();
}

MailServerProgram::~MailServerProgram() {
    process_.closeWriteChannel();
    // A connection of a test that failed may keep it.
    if (!process_.waitForFinished(10'000)) process_.kill();
    process_.waitForFinished(-1);
}

QByteArray MailServerProgram::nextLine() {
    spinUntil([this] {
        take();
        return !lines_.empty();
    });
    if (lines_.empty()) return {};
    QByteArray line = lines_.front();
    lines_.erase(lines_.begin());
    return line;
}

bool MailServerProgram::hasMore() {
    take();
    return !lines_.empty();
}

void MailServerProgram::take() {
    while (process_.canReadLine()) lines_.push_back(process_.readLine().trimmed());
}

QString certificateOf(const QString& name) {
    return made(name + QStringLiteral(".both"));
}

QString certificateAuthority() {
    return made(QStringLiteral("authority.pem"));
}

QString strangeAuthority() {
    return made(QStringLiteral("stranger.pem"));
}

}  // namespace kestrix::testing
