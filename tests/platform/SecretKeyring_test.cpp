// With a real secret service on a message bus of its own, in a home folder of its own; and without.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "tests/support/PrivateBus.h"

namespace kestrix::platform {
namespace {

using testing::nextLineOf;
using ::testing::StartsWith;

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
    }

    void startBus() {
        ASSERT_TRUE(bus_.start(surroundings_));
        surroundings_.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                             QString::fromStdString(bus_.address()));
    }
    // The bus starts it for the first who asks; it is opened with a password, as a login does it.
    void startBusWithService() {
        const QByteArray folder = bus_.path("").toUtf8();
        bus_.write("login", "of the login");
        bus_.write("service.sh", "echo $$ >" + folder +
                                     "/pid\nexec gnome-keyring-daemon --unlock --foreground "
                                     "--components=secrets <" +
                                     folder + "/login\n");
        bus_.write("secrets.service",
                   "[D-BUS Service]\nName=org.freedesktop.secrets\nExec=/bin/sh " + folder + "/service.sh\n");
        startBus();
    }
    pid_t servicePid() const {
        QFile file(bus_.path("pid"));
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
    testing::PrivateBus bus_;
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
    EXPECT_THAT(ask("find me@mail:587"), StartsWith("problem "));
    EXPECT_EQ(ask("turn"), "turned");
}

}  // namespace
}  // namespace kestrix::platform
