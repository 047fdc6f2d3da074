#include "tests/support/PrivateBus.h"

#include <gtest/gtest.h>

#include <sys/prctl.h>
#include <QFile>

#include <csignal>

#include "tests/support/EventLoop.h"

namespace kestrix::testing {

std::string nextLineOf(QProcess& process) {
    spinUntil([&] { return process.canReadLine() || process.state() == QProcess::NotRunning; });
    return process.readLine().trimmed().toStdString();
}

PrivateBus::~PrivateBus() {
    kill();
}

void PrivateBus::kill() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.kill();
    EXPECT_TRUE(process_.waitForFinished(30'000));
}

void PrivateBus::write(const char* name, const QByteArray& content) const {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

bool PrivateBus::start(const QProcessEnvironment& surroundings, const QByteArray& rules) {
    const QByteArray folder = folder_.path().toUtf8();
    write("bus.conf", "<busconfig><type>session</type><listen>unix:dir=" + folder + "</listen><servicedir>" +
                          folder + "</servicedir><policy context=\"default\">" + rules +
                          "</policy></busconfig>");
    process_.setProcessEnvironment(surroundings);
    process_.setStandardErrorFile(QProcess::nullDevice());
    process_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process_.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                    QStringLiteral("--config-file=") + path("bus.conf")});
    if (!process_.waitForStarted()) return false;
    address_ = nextLineOf(process_);
    return address_.starts_with("unix:");
}

}  // namespace kestrix::testing
