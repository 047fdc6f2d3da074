// `kestrix-cli simulate`, as a whole program and as its clients see it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/cli/Program.h"
#include "tests/cli/Sockets.h"

namespace kestrix::cli {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kMarker = "\x7E\x0D\x1E";
constexpr std::size_t kFrame = 36;

class Simulate : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_.path().toStdString() + "/" + name; }
    // A scenario file.
    std::string scenario(const std::string& text) const {
        writeFile(path("test.scenario"), text);
        return path("test.scenario");
    }
    QTemporaryDir folder_;
};

void expectOneComplaint(const Result& result, int status, const std::string& what) {
    EXPECT_EQ(result.status, status) << what;
    EXPECT_EQ(result.output, "") << what;
    EXPECT_THAT(linesOf(result.error), ElementsAre(AllOf(StartsWith("kestrix-cli: "), HasSubstr(what))));
}

TEST_F(Simulate, ListsTheBuiltInScenarios) {
    const Result result = run({"simulate", "--list"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    const std::vector<std::string> names = linesOf(result.output);
    EXPECT_THAT(names, AllOf(Contains("house"), Contains("flood"), Contains("faults")));
    for (const std::string& name : names) {
        SimulatedTester tester({"--scenario", name, "--speed", "max"});
        EXPECT_EQ(receive(connectTo(tester.port()), kFrame).size(), kFrame) << name;
    }
}

TEST_F(Simulate, SaysWhereItIsAndSendsFrames) {
    SimulatedTester tester({"--speed", "max"});
    EXPECT_EQ(tester.program().output(), "the tester is at " + tester.uri() + "\n");
    const std::string bytes = receive(connectTo(tester.port()), 10 * kFrame);
    ASSERT_EQ(bytes.size(), 10 * kFrame);
    for (std::size_t i = 0; i < bytes.size(); i += kFrame) EXPECT_EQ(bytes.substr(i, 3), kMarker);
    tester.program().signal(SIGTERM);
    EXPECT_EQ(tester.program().wait(), 0);
    EXPECT_EQ(tester.program().error(), "");
}

TEST_F(Simulate, ServesLocalhostAndTheNewAddresses) {
    for (const std::string host : {"localhost", "[::1]"}) {
        Program program({"simulate", "--tcp", host + ":0"});
        ASSERT_TRUE(program.waitForOutput("\n")) << program.error();
        EXPECT_THAT(program.output(), StartsWith("the tester is at tcp://" + host + ":"));
    }
}

TEST_F(Simulate, TheSameSeedGivesTheSameBytes) {
    constexpr std::size_t size = 100 * kFrame;
    const auto bytesOfSeed = [](const char* seed) {
        SimulatedTester tester({"--scenario", "insulation", "--speed", "max", "--seed", seed});
        return receive(connectTo(tester.port()), size);
    };
    const std::string first = bytesOfSeed("7");
    EXPECT_EQ(first.size(), size);
    EXPECT_EQ(bytesOfSeed("7"), first);
    EXPECT_NE(bytesOfSeed("8"), first);
}

TEST_F(Simulate, OneClientAtATime) {
    SimulatedTester tester({"--speed", "10"});
    Descriptor first = connectTo(tester.port());
    ASSERT_EQ(receive(first, kFrame).size(), kFrame);
    EXPECT_EQ(receive(connectTo(tester.port()), 1), "") << "turned away";
    EXPECT_EQ(receive(first, kFrame).size(), kFrame) << "and the first is still served";
    first.reset();
    // The next one may come before the program has seen the first one go.
    std::string bytes;
    while (bytes.empty()) bytes = receive(connectTo(tester.port()), kFrame);
    EXPECT_EQ(bytes.substr(0, 3), kMarker);
}

TEST_F(Simulate, AClientThatDoesNotReadCostsNeitherMemoryNorTime) {
    SimulatedTester tester({"--scenario", "flood", "--speed", "max"});
    const Descriptor client = connectTo(tester.port(), 4096);
    ASSERT_EQ(receive(client, kFrame).size(), kFrame);
    const long before = tester.program().peakKilobytes();
    EXPECT_TRUE(tester.program().waitUntilItRests());
    EXPECT_LT(tester.program().peakKilobytes() - before, 4096);
}

TEST_F(Simulate, AClientThatReadsSlowlyDoesNotMakeItGrow) {
    SimulatedTester tester({"--scenario", "flood", "--speed", "max"});
    const Descriptor client = connectTo(tester.port());
    ASSERT_EQ(receive(client, 2'000'000).size(), 2'000'000U);
    const long before = tester.program().peakKilobytes();
    ASSERT_EQ(receive(client, 40'000'000).size(), 40'000'000U);
    EXPECT_LT(tester.program().peakKilobytes() - before, 4096);
}

TEST_F(Simulate, ASerialPortComesAndGoes) {
    const std::string link = path("port");
    Program program({"simulate", "--pty", link, "--speed", "10"});
    ASSERT_TRUE(program.waitForOutput("\n")) << program.error();
    EXPECT_EQ(program.output(), "the tester is at serial:" + link + "\n");
    ASSERT_TRUE(fs::is_symlink(link));
    {
        const Descriptor port = openPort(link);
        ASSERT_TRUE(port.isOpen());
        const std::string bytes = receive(port, 3 * kFrame);
        ASSERT_EQ(bytes.size(), 3 * kFrame);
        for (std::size_t i = 0; i < bytes.size(); i += kFrame) EXPECT_EQ(bytes.substr(i, 3), kMarker);
    }
    const Descriptor later = openPort(link);
    ASSERT_TRUE(later.isOpen());
    EXPECT_EQ(receive(later, kFrame).size(), kFrame);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.error(), "");
    EXPECT_FALSE(fs::exists(fs::symlink_status(link)));
}

// The bytes that a terminal changes unless it is told not to.
TEST_F(Simulate, ASerialPortIsRaw) {
    std::string text = "rate max\nrepeat forever\nfunction insulation voltage=500 reference=1.0\n";
    for (const int value : {10, 13, 3, 17, 19, 2573, 3338}) {
        text += "reading 1 " + std::to_string(value) + ".0 Mohm\nshow 1 frames\n";
    }
    const std::string file = scenario(text);
    SimulatedTester tcp({"--scenario", file});
    const std::string expected = receive(connectTo(tcp.port()), 7 * kFrame);
    ASSERT_EQ(expected.size(), 7 * kFrame) << tcp.program().error();

    Program program({"simulate", "--pty", path("port"), "--scenario", file});
    ASSERT_TRUE(program.waitForOutput("\n")) << program.error();
    const Descriptor port = openPort(path("port"));
    EXPECT_EQ(receive(port, 7 * kFrame), expected);
}

// How often this process has waited for something.
long waitsOf(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    const std::string name = "voluntary_ctxt_switches:";
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name)) return std::stol(line.substr(name.size()));
    }
    return -1;
}

// What a process does tells nobody: it is looked at, again and again.
bool comesTrue(const std::function<bool()>& condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < limit) {
        if (condition()) return true;
        std::this_thread::yield();
    }
    return false;
}

// Masters of pseudo terminals that it has open.
int terminalsOf(pid_t process) {
    int count = 0;
    for (const auto& entry : fs::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
        std::error_code gone;
        if (fs::read_symlink(entry, gone).filename() == "ptmx") ++count;
    }
    return count;
}

const std::string kBurstAndOff =
    "rate max\nrepeat forever\nfunction insulation voltage=500 reference=1.0\nreading 1 5.0 Mohm\n"
    "burst 100 frames\nswitch-off 10ms\n";

TEST_F(Simulate, WhatCameBeforeAHangUpOfTheSerialPortArrives) {
    const std::string file = scenario(kBurstAndOff);
    Program program({"simulate", "--pty", path("port"), "--scenario", file});
    ASSERT_TRUE(program.waitForOutput("\n")) << program.error();
    for (int i = 0; i < 3; ++i) {
        Descriptor port;
        ASSERT_TRUE(comesTrue([&] { return (port = openPort(path("port"))).isOpen(); }));
        EXPECT_EQ(receiveToEnd(port).size(), 100 * kFrame);
    }
}

TEST_F(Simulate, ASerialPortWhoseNameCannotBeMadeIsTriedAgain) {
    const std::string file = scenario(kBurstAndOff);
    fs::create_directory(path("folder"));
    Program program({"simulate", "--pty", path("folder/port"), "--scenario", file});
    ASSERT_TRUE(program.waitForOutput("\n")) << program.error();
    const Descriptor port = openPort(path("folder/port"));
    ASSERT_TRUE(port.isOpen());
    fs::remove_all(path("folder"));
    EXPECT_EQ(receiveToEnd(port).size(), 100 * kFrame);
    ASSERT_TRUE(comesTrue([&] { return terminalsOf(program.id()) == 0; }));
    const long before = waitsOf(program.id());
    ASSERT_TRUE(comesTrue([&] { return waitsOf(program.id()) > before + 5; })) << "it tries in between";
    EXPECT_EQ(terminalsOf(program.id()), 0);
    fs::create_directory(path("folder"));
    Descriptor later;
    ASSERT_TRUE(comesTrue([&] { return (later = openPort(path("folder/port"))).isOpen(); }));
    EXPECT_EQ(receive(later, kFrame).size(), kFrame);
    EXPECT_EQ(terminalsOf(program.id()), 1);
}

TEST_F(Simulate, LeavesAnythingElseOfThatNameAlone) {
    writeFile(path("file"), "mine");
    expectOneComplaint(run({"simulate", "--pty", path("file")}), 1, path("file"));
    EXPECT_EQ(contentOf(path("file")), "mine");

    fs::create_symlink(path("file"), path("link"));
    expectOneComplaint(run({"simulate", "--pty", path("link")}), 1, path("link"));
    EXPECT_EQ(fs::read_symlink(path("link")), path("file"));

    for (const std::string nowhere : {"/dev/pts/1000000", "gone", "/dev/pts/./../../gone"}) {
        fs::create_symlink(nowhere, path("dangling"));
        expectOneComplaint(run({"simulate", "--pty", path("dangling")}), 1, path("dangling"));
        EXPECT_EQ(fs::read_symlink(path("dangling")), nowhere);
        fs::remove(path("dangling"));
    }

    expectOneComplaint(run({"simulate", "--pty", folder_.path().toStdString()}), 1, "left alone");
    expectOneComplaint(run({"simulate", "--pty", path("nowhere/port")}), 1, path("nowhere/port"));
}

TEST_F(Simulate, TakesOverTheNameThatAKilledOneLeft) {
    {
        Program killed({"simulate", "--pty", path("port")});
        ASSERT_TRUE(killed.waitForOutput("\n")) << killed.error();
    }
    ASSERT_TRUE(fs::is_symlink(path("port")));
    ASSERT_EQ(fs::read_symlink(path("port")).parent_path(), "/dev/pts/.");
    // Its number may be another program's by now, which would be left alone; this one is nobody's.
    fs::remove(path("port"));
    fs::create_symlink("/dev/pts/./1000000", path("port"));
    Program program({"simulate", "--pty", path("port")});
    ASSERT_TRUE(program.waitForOutput("\n")) << program.error();
    EXPECT_EQ(receive(openPort(path("port")), kFrame).size(), kFrame);
}

TEST_F(Simulate, TakesOnlyItsOwnPortAwayAtItsEnd) {
    Program first({"simulate", "--pty", path("port")});
    ASSERT_TRUE(first.waitForOutput("\n")) << first.error();
    fs::remove(path("port"));
    Program second({"simulate", "--pty", path("port")});
    ASSERT_TRUE(second.waitForOutput("\n")) << second.error();
    first.signal(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_TRUE(fs::is_symlink(path("port"))) << "which is the second one's";
}

// Whoever reads the line may stand elsewhere.
TEST_F(Simulate, SaysAnAbsoluteName) {
    const std::string relative = fs::relative(folder_.path().toStdString()).string();
    ASSERT_EQ(relative.front(), '.');
    Program program({"simulate", "--pty", relative + "/./port"});
    ASSERT_TRUE(program.waitForOutput("\n")) << program.error();
    EXPECT_EQ(program.output(), "the tester is at serial:" + path("port") + "\n");
    EXPECT_TRUE(fs::is_symlink(path("port")));
}

TEST_F(Simulate, AnOccupiedPortFails) {
    const Listener other;
    const std::string place = "127.0.0.1:" + std::to_string(other.port());
    expectOneComplaint(run({"simulate", "--tcp", place}), 1, place + ": ");
    expectOneComplaint(run({"simulate", "--tcp", "no.address:0"}), 1, "no.address");
}

TEST_F(Simulate, AScenarioThatIsNotThereOrBrokenFails) {
    const auto tryOut = [](const std::string& name) {
        return run({"simulate", "--tcp", "127.0.0.1:0", "--scenario", name});
    };
    expectOneComplaint(tryOut("castle"), 1, "castle: ");
    expectOneComplaint(tryOut(folder_.path().toStdString()), 1, "folder");
    expectOneComplaint(tryOut(scenario("rate 4\n\nfunction toaster\nshow 1s\n")), 1, "line 3: ");
    expectOneComplaint(tryOut(scenario("")), 1, "line 1: ");
    expectOneComplaint(tryOut(scenario(std::string(5000, '\xFF'))), 1, "line 1: ");
}

TEST_F(Simulate, ThePlaceIsOneAndRight) {
    const std::vector<std::vector<std::string>> wrong{{},
                                                      {"--tcp", "127.0.0.1:0", "--pty", path("port")},
                                                      {"--tcp", "127.0.0.1:0", "--list"},
                                                      {"--tcp", "127.0.0.1"},
                                                      {"--tcp", "127.0.0.1:65536"},
                                                      {"--tcp", "127.0.0.1:-1"},
                                                      {"--tcp", ":80"},
                                                      {"--tcp", ""},
                                                      {"--pty", ""}};
    for (std::vector<std::string> arguments : wrong) {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        arguments.insert(arguments.begin(), "simulate");
        expectOneComplaint(run(arguments), 2, "kestrix-cli: ");
    }
    EXPECT_FALSE(fs::exists(fs::symlink_status(path("port"))));
}

TEST_F(Simulate, SpeedAndSeedAreNumbers) {
    const std::vector<std::vector<std::string>> wrong{
        {"--speed", "fast"}, {"--speed", "0"},   {"--speed", "-1"}, {"--speed", "nan"}, {"--speed", "1x"},
        {"--speed", ""},     {"--seed", "abc"},  {"--seed", "1.5"}, {"--seed", "-1"},   {"--seed", ""},
        {"--seed", "12 3"},  {"--speed", "1e9"}, {"--speed", "inf"}};
    for (std::vector<std::string> arguments : wrong) {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        // What is wrong must show before anything is served, whatever it is served at.
        arguments.insert(arguments.begin(), {"simulate", "--pty", path("nowhere/port")});
        expectOneComplaint(run(arguments), 2, "kestrix-cli: ");
    }
}

}  // namespace
}  // namespace kestrix::cli
