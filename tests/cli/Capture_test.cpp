// `kestrix-cli capture`, as a whole program, and what becomes of its files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "tests/cli/Frames.h"
#include "tests/cli/Program.h"
#include "tests/cli/Sockets.h"

namespace kestrix::cli {
namespace {

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr const char* kHeader = "^# kestrix-capture 1 source=[^ ]+ start=20[0-9][0-9]-[0-9-]+T[0-9:]+Z\n";

// A server whose bytes are the test's, and a folder for the captures.
class Capture : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_.path().toStdString() + "/" + name; }

    // Waits until what a file of the folder has behind its header line is right.
    void waitUntil(const std::string& file,
                   const std::function<bool(const std::string& bytes)>& isRight) const {
        const Descriptor changes(inotify_init1(IN_CLOEXEC));
        ASSERT_GE(inotify_add_watch(changes.get(), folder_.path().toStdString().c_str(), IN_MODIFY), 0);
        while (!isRight(bytesIn(file))) {
            pollfd state{changes.get(), POLLIN, 0};
            ASSERT_GT(poll(&state, 1, 60'000), 0) << "it never has them";
            std::array<char, 4096> waste;
            ASSERT_GT(read(changes.get(), waste.data(), waste.size()), 0);
        }
    }
    void waitForBytes(const std::string& file, std::size_t bytes) const {
        waitUntil(file, [bytes](const std::string& kept) { return kept.size() >= bytes; });
    }
    std::string bytesIn(const std::string& file) const {
        const std::string content = contentOf(path(file));
        const auto lineEnd = content.find('\n');
        return lineEnd == std::string::npos ? std::string() : content.substr(lineEnd + 1);
    }

    // Captures these bytes, to the end.
    void capture(const std::string& file, const std::string& bytes, std::vector<std::string> options = {}) {
        options.insert(options.begin(), {"capture", listener_.uri(), path(file)});
        Program program(options);
        const Descriptor client = listener_.accept();
        sendAll(client, bytes);
        // Not only as many: an earlier capture is there until the first byte comes.
        waitUntil(file, [&bytes](const std::string& kept) { return kept == bytes; });
        program.signal(SIGTERM);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_EQ(program.output(), "");
        EXPECT_THAT(complaintsIn(program.error()),
                    ElementsAre(HasSubstr(std::to_string(bytes.size()) + " bytes")));
    }

    QTemporaryDir folder_;
    Listener listener_;
};

TEST_F(Capture, KeepsTheBytesBehindAHeaderLine) {
    const std::string bytes = "\x7E\x0D garbage\r\n" + manyFrames(200) + "\x7E";
    capture("house.kxc", bytes);
    EXPECT_THAT(contentOf(path("house.kxc")), ContainsRegex(kHeader));
    EXPECT_THAT(contentOf(path("house.kxc")), HasSubstr("source=" + listener_.uri() + " "));
    EXPECT_EQ(bytesIn("house.kxc"), bytes);
    const Result decoded = run({"decode", path("house.kxc")});
    EXPECT_THAT(linesOf(decoded.output), SizeIs(200));
    EXPECT_EQ(decoded.output, run({"decode"}, bytes).output);
}

TEST_F(Capture, OfASimulatedTesterGivesItsRecords) {
    writeFile(path("short.scenario"),
              "rate max\nfunction insulation voltage=500 reference=1.0\n"
              "reading 1 ramp 0.0 to 300.0 within 300 frames Mohm noise 3\nshow 300 frames\nsilence 3600s\n");
    const std::vector<std::string> options{"--scenario", path("short.scenario"), "--seed", "5"};
    constexpr std::size_t size = std::size_t{300} * 36;
    SimulatedTester reference(options);
    const std::string sent = receive(connectTo(reference.port()), size);
    ASSERT_EQ(sent.size(), size);

    SimulatedTester tester(options);
    Program program({"capture", tester.uri(), path("x.kxc")});
    waitForBytes("x.kxc", size);
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0) << program.error();
    EXPECT_EQ(bytesIn("x.kxc"), sent);
    EXPECT_THAT(linesOf(run({"decode", path("x.kxc")}).output), SizeIs(300));
}

TEST_F(Capture, CanBeReplayed) {
    capture("x.kxc", manyFrames(50));
    Program monitor({"monitor", "replay:" + path("x.kxc") + "?speed=max", "--seconds", "0"});
    Program again({"capture", "replay:" + path("x.kxc") + "?speed=100", path("again.kxc")});
    ASSERT_TRUE(monitor.waitUntil([&] { return linesOf(monitor.output()).size() >= 52; })) << monitor.error();
    monitor.signal(SIGTERM);
    EXPECT_EQ(monitor.wait(), 0) << monitor.error();
    const std::vector<std::string> lines = linesOf(monitor.output());
    waitForBytes("again.kxc", std::size_t{50} * 36);
    again.signal(SIGTERM);
    EXPECT_EQ(lines[0] + "," + lines[1], "Not Connected,Connected");
    for (std::size_t i = 2; i < 52; ++i) EXPECT_THAT(lines[i], StartsWith("INSULATION  ")) << i;
    EXPECT_EQ(again.wait(), 0) << again.error();
    EXPECT_THAT(bytesIn("again.kxc"), StartsWith(manyFrames(50)));
}

TEST_F(Capture, DoesNotOverwriteUnlessItIsTold) {
    capture("old.kxc", manyFrames(2));
    const std::string before = contentOf(path("old.kxc"));
    const Result refused = run({"capture", listener_.uri(), path("old.kxc"), "--seconds", "1"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(complaintsIn(refused.error),
                ElementsAre(AllOf(StartsWith("kestrix-cli: " + path("old.kxc")), HasSubstr("--force"))));
    EXPECT_EQ(contentOf(path("old.kxc")), before);

    writeFile(path("empty.kxc"), "");
    for (const char* file : {"old.kxc", "empty.kxc"}) {
        capture(file, insulationFrame(1), {"--force"});
        EXPECT_EQ(bytesIn(file), insulationFrame(1));
        EXPECT_THAT(contentOf(path(file)), ContainsRegex(kHeader));
    }
}

TEST_F(Capture, NeverReplacesAFileThatIsNoCapture) {
    const std::string header = "# kestrix-capture 1 source=simulator: start=2026-03-04T05:06:07Z\n";
    for (const std::string& content :
         {std::string("mine"), insulationFrame(1), "\n" + header, header.substr(0, header.size() - 1)}) {
        SCOPED_TRACE(content);
        writeFile(path("mine.txt"), content);
        const Result refused = run({"capture", "simulator:", path("mine.txt"), "--force", "--seconds", "1"});
        EXPECT_EQ(refused.status, 1);
        EXPECT_THAT(linesOf(refused.error),
                    ElementsAre("kestrix-cli: " + path("mine.txt") +
                                ": the file is no capture of Kestrix; it is left as it is"));
        EXPECT_EQ(contentOf(path("mine.txt")), content);
    }
}

TEST_F(Capture, NeverOverwritesWhatItReads) {
    capture("x.kxc", manyFrames(3));
    const std::string before = contentOf(path("x.kxc"));
    const Result result =
        run({"capture", "replay:" + path("x.kxc"), path("x.kxc"), "--force", "--seconds", "1"});
    EXPECT_NE(result.status, 0);
    EXPECT_EQ(contentOf(path("x.kxc")), before);
}

TEST_F(Capture, AFileThatCannotBeWrittenFailsWithOneLine) {
    for (const std::string& file : {path("missing/x.kxc"), folder_.path().toStdString()}) {
        const Result result = run({"capture", "simulator:", file, "--force"});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(linesOf(result.error), ElementsAre(StartsWith("kestrix-cli: " + file + ": ")));
    }
}

TEST_F(Capture, AFullDiskFailsWithOneLine) {
    const Result result = run({"capture", "simulator:", "/dev/full", "--force"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(complaintsIn(result.error), ElementsAre(StartsWith("kestrix-cli: /dev/full: ")));
}

TEST_F(Capture, AFileThatMayNotGrowFailsWithOneLineAndKeepsWhatFits) {
    Program program({"capture", listener_.uri(), path("x.kxc")});
    const Descriptor client = listener_.accept();
    sendAll(client, manyFrames(1));
    waitForBytes("x.kxc", 36);
    program.limitFileSize(contentOf(path("x.kxc")).size() + 10);
    sendAll(client, manyFrames(1));
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_THAT(complaintsIn(program.error()),
                ElementsAre(AllOf(StartsWith("kestrix-cli: " + path("x.kxc") + ": "),
                                  HasSubstr("File too large"), HasSubstr("46 bytes are kept"))));
    EXPECT_EQ(bytesIn("x.kxc"), (manyFrames(1) + manyFrames(1)).substr(0, 46));
}

TEST_F(Capture, ADashIsStandardOutput) {
    Program program({"capture", listener_.uri(), "-"});
    const Descriptor client = listener_.accept();
    const std::string bytes(108, '\x7e');
    sendAll(client, bytes);
    ASSERT_TRUE(program.waitForOutput(bytes));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.output(), ContainsRegex(kHeader));
    EXPECT_EQ(program.output().substr(program.output().find('\n') + 1), bytes);
    EXPECT_THAT(complaintsIn(program.error()), ElementsAre("kestrix-cli: 108 bytes in standard output"));
    EXPECT_NE(access("-", F_OK), 0);
}

// A shell's >> and 1<> have opened it for what they want.
TEST_F(Capture, StandardOutputIsNotEmptiedFirst) {
    const std::string before(1000, 'x');
    writeFile(path("own"), before);
    Surroundings setup;
    setup.output = path("own");
    Program program({"capture", listener_.uri(), "-"}, setup);
    const Descriptor client = listener_.accept();
    sendAll(client, manyFrames(1));
    ASSERT_TRUE(
        program.waitUntil([&] { return contentOf(path("own")).find(manyFrames(1)) != std::string::npos; }));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(contentOf(path("own")).size(), before.size());
}

TEST_F(Capture, ATerminalIsNoPlaceForRawBytes) {
    Surroundings setup;
    setup.terminal = true;
    const Result result = run({"capture", listener_.uri(), "-"}, {}, setup);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("kestrix-cli: standard output: it is a terminal"));
}

TEST_F(Capture, SaysWhyNoBytesCame) {
    const std::string port = "serial:/dev/no-such-port";
    Program silent({"capture", listener_.uri(), path("a.kxc"), "--seconds", "1"});
    Program missing({"capture", port, path("b.kxc")});
    ASSERT_TRUE(missing.waitForError("no such port"));
    missing.signal(SIGTERM);
    EXPECT_EQ(silent.wait(), 1);
    EXPECT_THAT(complaintsIn(silent.error()),
                ElementsAre(StartsWith("kestrix-cli: " + listener_.uri() + ": no bytes came")));
    EXPECT_EQ(missing.wait(), 1);
    EXPECT_THAT(complaintsIn(missing.error()),
                ElementsAre(AllOf(StartsWith("kestrix-cli: " + port + ": no bytes came"),
                                  HasSubstr("no such port"))));
}

TEST_F(Capture, AWrongAddressTouchesNoFile) {
    writeFile(path("old.kxc"), "mine");
    const Result wrong = run({"capture", "radio:x", path("old.kxc"), "--force"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(linesOf(wrong.error), ElementsAre(StartsWith("kestrix-cli: radio:x: ")));
    EXPECT_EQ(contentOf(path("old.kxc")), "mine");
    EXPECT_EQ(run({"capture", "replay:" + path("missing"), path("new.kxc")}).status, 1);
    EXPECT_NE(access(path("new.kxc").c_str(), F_OK), 0);
}

// What it has to say must not land in the file that takes the place of standard error.
TEST_F(Capture, StartedWithoutStandardOutputsKeepsTheBytesOnly) {
    for (const std::vector<int>& closed : {std::vector<int>{2}, std::vector<int>{1, 2}, {0, 1, 2}}) {
        SCOPED_TRACE(::testing::PrintToString(closed));
        const std::string file = "without" + std::to_string(closed.size());
        Surroundings setup;
        setup.closed = closed;
        Program program({"capture", listener_.uri(), path(file)}, setup);
        const Descriptor client = listener_.accept();
        sendAll(client, manyFrames(3));
        waitForBytes(file, std::size_t{3} * 36);
        program.signal(SIGTERM);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_EQ(bytesIn(file), manyFrames(3));
    }
}

TEST_F(Capture, GoesOnAfterADrop) {
    Program program({"capture", listener_.uri(), path("x.kxc")});
    {
        const Descriptor first = listener_.accept();
        sendAll(first, manyFrames(2));
        waitForBytes("x.kxc", std::size_t{2} * 36);
    }
    const Descriptor second = listener_.accept();
    sendAll(second, manyFrames(3));
    waitForBytes("x.kxc", std::size_t{5} * 36);
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(bytesIn("x.kxc"), manyFrames(2) + manyFrames(3));
}

}  // namespace
}  // namespace kestrix::cli
