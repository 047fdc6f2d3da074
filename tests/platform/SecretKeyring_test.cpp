// With a real secret service on a message bus of its own, in a home folder of its own; and without.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "tests/support/EventLoop.h"

namespace kestrix::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// What a program says, line by line.
std::string nextLineOf(QProcess& process) {
    testing::spinUntil([&] { return process.canReadLine() || process.state() == QProcess::NotRunning; });
    return process.readLine().trimmed().toStdString();
}

void end(QProcess& process) {
    if (process.state() == QProcess::NotRunning) return;
    process.closeWriteChannel();
    process.terminate();
    EXPECT_TRUE(process.waitForFinished(30'000));
}

class SecretKeyringTest : public ::testing::Test {
  protected:
    SecretKeyringTest() {
        surroundings_ = QProcessEnvironment::systemEnvironment();
        for (const char* name :
             {"HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"})
            surroundings_.insert(QLatin1String(name), folder_.path());
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION"})
            surroundings_.remove(QLatin1String(name));
        surroundings_.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                             QStringLiteral("unix:path=/nowhere/bus"));
    }
    ~SecretKeyringTest() override {
        end(calls_);
        if (const pid_t service = servicePid(); service > 0) kill(service, SIGTERM);
        end(bus_);
    }

    void write(const char* name, const QByteArray& content) const {
        QFile file(folder_.filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    // A bus that can start nothing but what the folder says.
    void startBus() {
        const QByteArray folder = folder_.path().toUtf8();
        write(
            "bus.conf",
            "<busconfig><type>session</type><listen>unix:dir=" + folder + "</listen><servicedir>" + folder +
                "</servicedir><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        start(bus_, QStringLiteral("dbus-daemon"),
              {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
               QStringLiteral("--config-file=") + folder_.filePath(QStringLiteral("bus.conf"))});
        const std::string address = nextLineOf(bus_);
        ASSERT_THAT(address, StartsWith("unix:"));
        surroundings_.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString::fromStdString(address));
    }
    // The bus starts it for the first who asks; it is opened with a password, as a login does it.
    void startBusWithService() {
        const QByteArray folder = folder_.path().toUtf8();
        write("login", "of the login");
        write("service.sh", "echo $$ >" + folder +
                                "/pid\nexec gnome-keyring-daemon --unlock --foreground "
                                "--components=secrets <" +
                                folder + "/login\n");
        write("secrets.service",
              "[D-BUS Service]\nName=org.freedesktop.secrets\nExec=/bin/sh " + folder + "/service.sh\n");
        startBus();
    }
    pid_t servicePid() const {
        QFile file(folder_.filePath(QStringLiteral("pid")));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
    }
    void startCalls() { start(calls_, QStringLiteral(KESTRIX_KEYRING_CALLS), {}); }

    std::string ask(const char* line) {
        calls_.write(line);
        calls_.write("\n");
        return nextLineOf(calls_);
    }

    QTemporaryDir folder_;
    QProcessEnvironment surroundings_;
    QProcess bus_;
    QProcess calls_;

  private:
    void start(QProcess& process, const QString& program, const QStringList& arguments) {
        process.setProcessEnvironment(surroundings_);
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(program, arguments);
        ASSERT_TRUE(process.waitForStarted()) << program.toStdString();
    }
};

TEST_F(SecretKeyringTest, APasswordIsKeptFoundAndForgotten) {
    startBusWithService();
    startCalls();
    EXPECT_EQ(ask("find me@mail.example.org:587"), "none");
    EXPECT_EQ(ask("keep me@mail.example.org:587 pässword"), "kept");
    EXPECT_EQ(ask("keep me@mail.example.org:465 other"), "kept");
    EXPECT_EQ(ask("find me@mail.example.org:587"), "found pässword");
    EXPECT_EQ(ask("keep me@mail.example.org:587 newer"), "kept");
    EXPECT_EQ(ask("find me@mail.example.org:587"), "found newer");
    EXPECT_EQ(ask("forget me@mail.example.org:587"), "forgotten");
    EXPECT_EQ(ask("find me@mail.example.org:587"), "none");
    EXPECT_EQ(ask("find me@mail.example.org:465"), "found other");
    EXPECT_EQ(ask("forget me@mail.example.org:587"), "forgotten");
}

TEST_F(SecretKeyringTest, AnotherProgramFindsItLater) {
    startBusWithService();
    startCalls();
    EXPECT_EQ(ask("keep me@mail:587 secret"), "kept");
    end(calls_);
    startCalls();
    EXPECT_EQ(ask("find me@mail:587"), "found secret");
}

TEST_F(SecretKeyringTest, WhereQtHasItsOwnEventLoopItAnswersToo) {
    surroundings_.insert(QStringLiteral("QT_NO_GLIB"), QStringLiteral("1"));
    startBusWithService();
    startCalls();
    EXPECT_EQ(ask("keep me@mail:587 secret"), "kept");
    EXPECT_EQ(ask("find me@mail:587"), "found secret");
}

TEST_F(SecretKeyringTest, WithoutABusThereIsOneLine) {
    startCalls();
    for (const char* line : {"find me@mail:587", "keep me@mail:587 secret", "forget me@mail:587"})
        EXPECT_THAT(ask(line), StartsWith("problem no keyring of the desktop can be used: ")) << line;
}

TEST_F(SecretKeyringTest, WithoutASecretServiceThereIsOneLine) {
    startBus();
    startCalls();
    for (const char* line : {"find me@mail:587", "keep me@mail:587 secret", "forget me@mail:587"})
        EXPECT_THAT(ask(line), StartsWith("problem no keyring of the desktop can be used: ")) << line;
}

TEST_F(SecretKeyringTest, AServiceThatDoesNotAnswerHoldsNothingUp) {
    startBusWithService();
    startCalls();
    EXPECT_EQ(ask("keep me@mail:587 secret"), "kept");
    kill(servicePid(), SIGSTOP);
    calls_.write("find me@mail:587\n");
    for (int i = 0; i < 10; ++i) EXPECT_EQ(ask("turn"), "turned");
    kill(servicePid(), SIGCONT);
    EXPECT_EQ(nextLineOf(calls_), "found secret");
}

TEST_F(SecretKeyringTest, ABusThatGoesAwayIsALineAndNotTheEnd) {
    startBusWithService();
    startCalls();
    EXPECT_EQ(ask("keep me@mail:587 secret"), "kept");
    bus_.kill();
    EXPECT_TRUE(bus_.waitForFinished(30'000));
    EXPECT_THAT(ask("find me@mail:587"), StartsWith("problem "));
    EXPECT_EQ(ask("turn"), "turned");
}

}  // namespace
}  // namespace kestrix::platform
