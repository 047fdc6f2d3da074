// The commands with a tester behind Bluetooth, against a service on a bus of the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QLocalServer>
#include <QProcess>
#include <QTemporaryDir>

#include <string>
#include <vector>

#include "tests/cli/Frames.h"
#include "tests/cli/Program.h"
#include "tests/support/BluezThread.h"

namespace kestrix::cli {
namespace {

using testing::BluezThread;
using ::testing::Contains;
using ::testing::ElementsAre;
using testing::FakeBluez;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* kFirstTester = "AA:BB:CC:00:00:01";
constexpr const char* kSecondTester = "AA:BB:CC:00:00:02";

class BluetoothCommands : public ::testing::Test {
  protected:
    Surroundings surroundings() const {
        Surroundings setup;
        setup.environment = {bluez_.environment()};
        return setup;
    }
    // A tester that sends as long as somebody listens.
    void addTester(const char* address, const std::string& name) {
        bluez_.with([&](FakeBluez& bluez) {
            bluez.addDevice({address, name});
            bluez.greet(address, manyFrames(20));
        });
    }
    static std::vector<std::string> bluetoothLines(const std::string& output) {
        std::vector<std::string> lines;
        for (const std::string& line : linesOf(output)) {
            if (line.starts_with("bluetooth:")) lines.push_back(line);
        }
        return lines;
    }

    BluezThread bluez_;
};

TEST_F(BluetoothCommands, DevicesListsPairedTesters) {
    addTester(kFirstTester, "Tester 1");
    bluez_.with([](FakeBluez& bluez) {
        bluez.addDevice({kSecondTester, "Bad\x1b[2J\nname", true, true, true});
        bluez.addDevice({"AA:BB:CC:00:00:03", "Headset", true, true, false, {testing::kHeadsetUuid}});
    });
    const Result result = run({"devices"}, {}, surroundings());
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(
        bluetoothLines(result.output),
        ElementsAre("bluetooth:AA:BB:CC:00:00:02  Bad\ufffd[2J\ufffdname, connected (it is blocked on this "
                    "computer: 'bluetoothctl unblock AA:BB:CC:00:00:02' lets it in)",
                    "bluetooth:AA:BB:CC:00:00:01  Tester 1, paired"));
    EXPECT_THAT(linesOf(result.output), Contains("simulator:  the built-in tester"));
    bluez_.with([](FakeBluez& bluez) { EXPECT_THAT(bluez.attempts, ElementsAre()); });
}

TEST_F(BluetoothCommands, DevicesSaysWhyBluetoothCannotBeLookedAt) {
    const auto lineIs = [this](const char* line) {
        EXPECT_THAT(bluetoothLines(run({"devices"}, {}, surroundings()).output), ElementsAre(line));
    };
    lineIs("bluetooth:  none (no paired device offers a serial port: switch the tester on and pair it)");
    bluez_.with([](FakeBluez& bluez) { bluez.setPowered(false); });
    lineIs("bluetooth:  none (Bluetooth is switched off: switch it on)");
    bluez_.with([](FakeBluez& bluez) { bluez.removeAdapter(); });
    lineIs(
        "bluetooth:  none (this computer has no Bluetooth adapter: plug one in, or use the tester's cable)");
    bluez_.with([](FakeBluez& bluez) { bluez.becomeDeaf(); });
    lineIs(
        "bluetooth:  none (the Bluetooth service does not answer: restart it with 'systemctl restart "
        "bluetooth')");
    bluez_.with([](FakeBluez& bluez) { bluez.leave(); });
    lineIs(
        "bluetooth:  none (the Bluetooth service does not run: start it with 'systemctl start "
        "bluetooth')");
}

TEST_F(BluetoothCommands, DevicesIsHeldUpByNoBusThatDoesNotAnswer) {
    const QTemporaryDir folder;
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder.filePath(QStringLiteral("bus"))));
    Surroundings setup;
    setup.environment = {"DBUS_SYSTEM_BUS_ADDRESS=unix:path=" + silent.fullServerName().toStdString()};
    const Result result = run({"devices"}, {}, setup);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(bluetoothLines(result.output),
                ElementsAre("bluetooth:  none (no Bluetooth without the system's message bus, which does "
                            "not answer: choose a serial port, or restart the computer)"));
    // Nor does it hold up the end.
    Program waiting({"monitor", "bluetooth:", "--seconds", "0"}, setup);
    ASSERT_TRUE(waiting.waitForError("does not answer")) << waiting.error();
    waiting.signal(SIGTERM);
    EXPECT_EQ(waiting.waitForEnd(), 1);
}

TEST_F(BluetoothCommands, DevicesFindsTheTesterByItsAddressAndWithoutOne) {
    addTester(kFirstTester, "Tester 1");
    for (const std::string uri : {"bluetooth:", "bluetooth:aa:bb:cc:00:00:01"}) {
        const Result result = run({"devices", uri}, {}, surroundings());
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(linesOf(result.output), ElementsAre(uri + "  a tester, at INSULATION"));
        EXPECT_EQ(result.error, "");
    }
}

TEST_F(BluetoothCommands, DevicesTellsTheStepThatFails) {
    bluez_.with([](FakeBluez& bluez) {
        bluez.addDevice({kFirstTester, "Tester 1"});
        bluez.behave(kFirstTester, {FakeBluez::Way::Fails});
        bluez.addDevice({kSecondTester, "Tester 2", false});
    });
    const std::string one = std::string("bluetooth:") + kFirstTester;
    const std::string two = std::string("bluetooth:") + kSecondTester;
    const Result result = run({"devices", one, two, "bluetooth:", "--seconds", "2"}, {}, surroundings());
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(
        linesOf(result.output),
        ElementsAre(one + "  not found: no answer (Tester 1: switched off, asleep or out of reach: switch it "
                          "on and bring it near)",
                    two +
                        "  not found: pairing (Tester 2: it is not paired with this computer: pair it in the "
                        "Bluetooth settings)",
                    "bluetooth:  not found: no answer (Tester 1: switched off, asleep or out of reach: "
                    "switch it on and bring it near)"));
    EXPECT_THAT(complaintsIn(result.error), ElementsAre("kestrix-cli: 3 of 3 not found"));
}

TEST_F(BluetoothCommands, DevicesLooksFirstAtTheOneThatWasUsedLast) {
    addTester(kFirstTester, "Tester 1");
    addTester(kSecondTester, "Tester 2");
    const QTemporaryDir config;
    ASSERT_TRUE(QDir(config.path()).mkpath(QStringLiteral("kestrix")));
    const std::string settings = config.path().toStdString() + "/kestrix/kestrix-cli.ini";
    const std::string lastUsed = std::string("[Kestrix]\nlastUsedTester=bluetooth:") + kSecondTester + "\n";
    writeFile(settings, lastUsed);
    Surroundings setup = surroundings();
    setup.environment.push_back("XDG_CONFIG_HOME=" + config.path().toStdString());
    EXPECT_EQ(run({"devices", "bluetooth:"}, {}, setup).status, 0);
    bluez_.with([](FakeBluez& bluez) { EXPECT_EQ(bluez.attempts.front(), kSecondTester); });
    EXPECT_EQ(run({"devices", std::string("bluetooth:") + kFirstTester}, {}, setup).status, 0);
    EXPECT_EQ(contentOf(settings), lastUsed) << "who only looks uses none";
}

TEST_F(BluetoothCommands, MonitorShowsItsReadingsAndFindsItAgainAfterADrop) {
    bluez_.with([](FakeBluez& bluez) {
        bluez.addDevice({});
        bluez.greet(kFirstTester, insulationFrame(123));
    });
    Program program({"monitor", "bluetooth:", "--seconds", "0"}, surroundings());
    ASSERT_TRUE(program.waitForOutput("123")) << program.error() << program.output();
    bluez_.with([](FakeBluez& bluez) {
        bluez.greet(kFirstTester, insulationFrame(456));
        bluez.endLine(kFirstTester);
    });
    ASSERT_TRUE(program.waitForOutput("456")) << program.error() << program.output();
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), 0);
}

TEST_F(BluetoothCommands, MonitorRemembersTheTesterThatItHeard) {
    addTester(kFirstTester, "Tester 1");
    addTester(kSecondTester, "Tester 2");
    const QTemporaryDir folder;
    const std::string settings = folder.path().toStdString() + "/settings.ini";
    const auto watch = [&](const char* uri) {
        Program program({"monitor", uri, "--settings", settings, "--seconds", "0"}, surroundings());
        EXPECT_TRUE(program.waitForOutput("INSULATION")) << program.error();
        program.signal(SIGTERM);
        EXPECT_EQ(program.waitForEnd(), 0);
    };
    watch("bluetooth:AA:BB:CC:00:00:02");
    EXPECT_THAT(contentOf(settings), HasSubstr("bluetooth:AA:BB:CC:00:00:02"));
    bluez_.with([](FakeBluez& bluez) { bluez.attempts.clear(); });
    watch("bluetooth:");
    bluez_.with([](FakeBluez& bluez) { EXPECT_THAT(bluez.attempts, ElementsAre(kSecondTester)); });
}

TEST_F(BluetoothCommands, CaptureKeepsItsBytes) {
    const std::string bytes = manyFrames(500);
    bluez_.with([&](FakeBluez& bluez) {
        bluez.addDevice({});
        bluez.greet(kFirstTester, bytes);
    });
    const QTemporaryDir folder;
    const std::string file = folder.path().toStdString() + "/a.kxc";
    Program program({"capture", "bluetooth:AA:BB:CC:00:00:01", file, "--seconds", "0"}, surroundings());
    ASSERT_TRUE(program.waitUntil([&] { return contentOf(file).size() >= bytes.size(); })) << program.error();
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), 0);
    EXPECT_THAT(contentOf(file), StartsWith("# kestrix-capture 1 source=bluetooth:AA:BB:CC:00:00:01 "));
    EXPECT_TRUE(contentOf(file).ends_with(bytes));
}

// Every command would wait for them at its start.
TEST(BluetoothLibraries, AreLoadedByNoCommandThatDoesNotAskForThem) {
    QProcess list;
    list.start(QStringLiteral("ldd"),
               {QStringLiteral(KESTRIX_BINARY_DIR "/bin/../libexec/kestrix/kestrix-cli")});
    ASSERT_TRUE(list.waitForFinished());
    const std::string libraries = list.readAllStandardOutput().toStdString();
    EXPECT_THAT(libraries, HasSubstr("libQt6Core"));
    for (const char* library : {"libsystemd", "libdbus", "libQt6DBus"})
        EXPECT_THAT(libraries, ::testing::Not(HasSubstr(library)));
}

}  // namespace
}  // namespace kestrix::cli
