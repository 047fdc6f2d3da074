// `kestrix-cli devices`: what is found, and which step fails.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/ioctl.h>

#include <csignal>
#include <string>
#include <vector>

#include "tests/cli/Frames.h"
#include "tests/cli/Program.h"
#include "tests/cli/SerialPort.h"
#include "tests/cli/Sockets.h"

namespace kestrix::cli {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// What is there is found long before, also where everything is slow.
constexpr const char* kLongEnough = "4";

void expectFound(const Result& result, const std::string& uri, const std::string& function) {
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(linesOf(result.output), ElementsAre(uri + "  a tester, at " + function));
    EXPECT_EQ(result.error, "");
}

TEST(Devices, ListsWhatThereIs) {
    const Result result = run({"devices"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    std::vector<std::string> kinds;  // in their order
    for (const std::string& line : linesOf(result.output)) {
        EXPECT_THAT(line, ::testing::ContainsRegex("^(bluetooth|serial|simulator):[^ ]*  [^ ]"));
        const std::string kind = line.substr(0, line.find(':'));
        if (kinds.empty() || kinds.back() != kind) kinds.push_back(kind);
    }
    EXPECT_THAT(kinds, ElementsAre("bluetooth", "serial", "simulator"));
}

TEST(Devices, FindsTheSimulator) {
    const Result result = run({"devices", "simulator:earth"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(linesOf(result.output), ElementsAre(StartsWith("simulator:earth  a tester, at ")));
    EXPECT_EQ(result.error, "");
}

TEST(Devices, FindsATesterBehindTcp) {
    const Listener listener;
    Program program({"devices", listener.uri()});
    const Descriptor client = listener.accept();
    // In pieces, with something before it.
    sendAll(client, "\x7E\x0D" + insulationFrame(5).substr(0, 10));
    sendAll(client, insulationFrame(5) + insulationFrame(6));
    const int status = program.wait();
    expectFound({status, program.output(), program.error()}, listener.uri(), "INSULATION");
}

TEST(Devices, FindsATesterAtASerialPort) {
    const QTemporaryDir folder;
    const std::string port = folder.path().toStdString() + "/port";
    Program tester({"simulate", "--pty", port, "--scenario", "insulation"});
    ASSERT_TRUE(tester.waitForOutput("\n")) << tester.error();
    expectFound(run({"devices", "serial:" + port}), "serial:" + port, "INSULATION");
}

TEST(Devices, TellsTheStepThatFails) {
    std::string refused;
    {
        const Listener gone;
        refused = gone.uri();
    }
    const std::string missing = "serial:/dev/no-such-port";
    const SerialPort port;
    ASSERT_EQ(ioctl(port.user.get(), TIOCEXCL), 0);
    const std::string busy = "serial:" + port.name;
    const Listener silent;  // the system takes the call

    Surroundings setup;
    setup.unprivileged = true;
    const Result result =
        run({"devices", refused, missing, busy, silent.uri(), "--seconds", kLongEnough}, {}, setup);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(linesOf(result.output),
                ElementsAre(refused + "  not found: refused (Connection refused)",
                            missing + "  not found: missing (no such port)",
                            busy + "  not found: port busy (the port is busy)",
                            silent.uri() + "  not found: no bytes (connected, but no bytes come)"));
    EXPECT_THAT(complaintsIn(result.error), ElementsAre("kestrix-cli: 4 of 4 not found"));
}

// A marker and a good length do not make a tester: the function must be one that there is.
// It looks for less time than the silence takes after which a peer is dialled anew.
TEST(Devices, BytesButNoFrame) {
    const Listener garbage;
    const Listener unknown;
    Program program({"devices", garbage.uri(), unknown.uri(), "--seconds", "2"});
    const Descriptor first = garbage.accept();
    const Descriptor second = unknown.accept();
    sendAll(first, std::string(100, '\x7E'));
    sendAll(second, bytesOf(testing::FrameBuilder('2').function('9')));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_THAT(linesOf(program.output()),
                ElementsAre(garbage.uri() + "  not found: no valid frames (bytes come, but no valid frame)",
                            unknown.uri() + "  not found: no valid frames (bytes come, but no valid frame)"));
    EXPECT_THAT(complaintsIn(program.error()), ElementsAre("kestrix-cli: 2 of 2 not found"));
}

// The peer is dialled anew after a silence. What is known of it is what it sent before.
TEST(Devices, BytesButNoFrameIsStillSaidWhenThePeerIsDialledAnew) {
    const Listener garbage;
    Program program({"devices", garbage.uri(), "--seconds", "0"});
    const Descriptor first = garbage.accept();
    sendAll(first, std::string(100, '\x7E'));
    const Descriptor again = garbage.accept();
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), -SIGTERM);
    EXPECT_THAT(linesOf(program.output()),
                ElementsAre(garbage.uri() + "  not found: no valid frames (bytes come, but no valid frame)"));
}

// The report and the status say the same, even where the tester's position has no name.
TEST(Devices, ATesterAtAPositionWithoutAName) {
    const Listener listener;
    Program program({"devices", listener.uri(), "--seconds", "0"});
    const Descriptor client = listener.accept();
    sendAll(client, bytesOf(testing::FrameBuilder('6').setting(1, 200)));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.output(), AllOf(HasSubstr("a tester"), Not(HasSubstr("not found"))));
    EXPECT_EQ(program.error(), "");
}

TEST(Devices, OneLineForEachInTheirOrder) {
    const Listener silent;
    Program program(
        {"devices", "serial:/dev/no-such-port", silent.uri(), "simulator:", "--seconds", kLongEnough});
    const Descriptor client = silent.accept();
    for (int i = 0; i < 5; ++i) sendAll(client, bytesOf(testing::FrameBuilder('6').setting(1, 200)));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_THAT(linesOf(program.output()), ElementsAre(StartsWith("serial:/dev/no-such-port  not found: "),
                                                       StartsWith(silent.uri() + "  a tester"),
                                                       StartsWith("simulator:  a tester, at ")));
    EXPECT_THAT(complaintsIn(program.error()), ElementsAre("kestrix-cli: 1 of 3 not found"));
}

TEST(Devices, AWrongOneIsToldBeforeAnyIsLookedAt) {
    const Result wrong = run({"devices", "simulator:", "radio:x"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.output, "");
    EXPECT_THAT(linesOf(wrong.error), ElementsAre(StartsWith("kestrix-cli: radio:x: ")));

    for (const char* uri :
         {"simulator:?seed=x", "simulator:?speed=x", "simulator:castle?seed=x", "simulator:?wind=1"}) {
        EXPECT_EQ(run({"devices", uri}).status, 2) << uri;
        EXPECT_EQ(run({"monitor", uri}).status, 2) << uri;
    }

    const Result missing = run({"devices", "simulator:castle"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(linesOf(missing.error), ElementsAre(StartsWith("kestrix-cli: simulator:castle: ")));
}

}  // namespace
}  // namespace kestrix::cli
