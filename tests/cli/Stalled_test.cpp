// Readers who stop reading, writers who do not come: what each command makes of them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

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
using ::testing::ContainsRegex;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class Stalled : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_.path().toStdString() + "/" + name; }
    std::string makePipe(const std::string& name) const {
        EXPECT_EQ(mkfifo(path(name).c_str(), 0600), 0);
        return path(name);
    }
    static Surroundings stalled(bool terminal = false) {
        Surroundings setup;
        setup.stalled = true;
        setup.terminal = terminal;
        setup.environment = {"TERM=xterm"};
        return setup;
    }

    QTemporaryDir folder_;
};

// Every other one differs from the one before it, so that each is a line of its own.
std::string changingFrames(int count) {
    std::string frames;
    for (int i = 0; i < count; ++i) frames += insulationFrame(i % 2 == 0 ? 1000 : 1001);
    return frames;
}

// The tester would stop, or its bytes be lost, if it were not listened to.
TEST_F(Stalled, MonitorListensOnAndThenTellsTheLatest) {
    SerialPort port;
    Program program({"monitor", "serial:" + port.name, "--seconds", "0"}, stalled());
    const std::string frames = changingFrames(20'000);
    ASSERT_TRUE(writeAll(port.tester, frames)) << "it does not listen";
    ASSERT_TRUE(writeAll(port.tester, insulationFrame(4321)));
    program.startReading();
    ASSERT_TRUE(program.waitForOutput("INSULATION  4321 "));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_LT(program.output().size(), frames.size() / 2) << "what nobody reads is not kept without end";
    EXPECT_EQ(program.output().back(), '\n');
    EXPECT_THAT(linesOf(program.output()),
                Each(ContainsRegex("^(Connected|Not Connected|INSULATION  [0-9.]+ .+=[^=]+.*)$")));
}

TEST_F(Stalled, ATerminalThatGoesOnShowsTheLatestState) {
    SerialPort port;
    Program program({"monitor", "serial:" + port.name}, stalled(true));
    ASSERT_TRUE(writeAll(port.tester, changingFrames(5000) + insulationFrame(4321)));
    program.startReading();
    ASSERT_TRUE(program.waitForOutput("● Connected"));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.output(), ::testing::EndsWith("\x1b[?25h"));
}

TEST_F(Stalled, DecodeGivesALateReaderEverything) {
    writeFile(path("many.bin"), changingFrames(3000));
    Program program({"decode", path("many.bin")}, stalled());
    ASSERT_TRUE(program.waitUntilItCatches(SIGTERM));
    program.startReading();
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.output(), run({"decode", path("many.bin")}).output);
}

TEST_F(Stalled, DecodeReadsAPipeToItsEnd) {
    const std::string pipe = makePipe("pipe");
    Program program({"decode", pipe});
    {
        const Descriptor writer(open(pipe.c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_TRUE(writer.isOpen());
        ASSERT_TRUE(writeAll(writer, insulationFrame(1)));
        ASSERT_TRUE(program.waitForOutput("\n"));
        ASSERT_TRUE(writeAll(writer, insulationFrame(2)));
    }
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(linesOf(program.output()).size(), 2U);
}

TEST_F(Stalled, DecodeOfAPipeThatNobodyWritesIntoEndsOnASignal) {
    Program program({"decode", makePipe("pipe")});
    ASSERT_TRUE(program.waitUntilItCatches(SIGTERM));
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), -SIGTERM);
}

TEST_F(Stalled, CaptureIntoAPipeThatNobodyReadsEndsOnASignal) {
    const std::string pipe = makePipe("pipe");
    Program program({"capture", "simulator:", pipe, "--force"});
    ASSERT_TRUE(program.waitUntilItCatches(SIGTERM));
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_EQ(program.error(), "kestrix-cli: " + pipe + ": nobody reads it\n");
}

TEST_F(Stalled, CaptureIntoAPipeEndsQuietlyWithItsReader) {
    const std::string pipe = makePipe("pipe");
    const Listener listener;
    Program program({"capture", listener.uri(), pipe, "--force"});
    Descriptor reader(open(pipe.c_str(), O_RDONLY | O_CLOEXEC));
    const Descriptor tester = listener.accept();
    sendAll(tester, manyFrames(100));
    std::string got;
    while (got.size() < std::size_t{100} * 36) got += receive(reader, 1);
    EXPECT_THAT(got, StartsWith("# kestrix-capture 1 "));
    reader.reset();
    // It learns of it with what it writes next.
    while (!program.hasEnded()) {
        if (!writeAll(tester, insulationFrame(1))) break;
    }
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(complaintsIn(program.error()), ElementsAre(HasSubstr(" bytes in " + pipe)));
}

TEST_F(Stalled, CaptureTellsHowMuchAReaderTookWhoStopped) {
    const std::string pipe = makePipe("pipe");
    const Listener listener;
    Program program({"capture", listener.uri(), pipe, "--force"});
    const Descriptor reader(open(pipe.c_str(), O_RDONLY | O_CLOEXEC));
    const Descriptor tester = listener.accept();
    sendAll(tester, manyFrames(5000));
    pollfd some{reader.get(), POLLIN, 0};
    ASSERT_EQ(poll(&some, 1, 60'000), 1);
    program.signal(SIGTERM);
    EXPECT_EQ(program.waitForEnd(), 0);
    const std::string got = receiveToEnd(reader);
    const std::size_t kept = got.size() - got.find('\n') - 1;
    EXPECT_THAT(complaintsIn(program.error()), ElementsAre(HasSubstr(std::to_string(kept) + " bytes in ")));
}

// A file that cannot be made shorter: its old bytes would stand behind the new ones.
TEST_F(Stalled, CaptureWritesNothingOverBytesThatItCannotTakeAway) {
    const Descriptor old(memfd_create("old", MFD_ALLOW_SEALING | MFD_CLOEXEC));
    const std::string content =
        "# kestrix-capture 1 source=simulator: start=2026-03-04T05:06:07Z\n" + std::string(10'000, 'x');
    ASSERT_TRUE(writeAll(old, content));
    ASSERT_EQ(fcntl(old.get(), F_ADD_SEALS, F_SEAL_SHRINK), 0);
    const std::string file = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(old.get());
    const Listener listener;
    Program program({"capture", listener.uri(), file, "--force"});
    const Descriptor tester = listener.accept();
    sendAll(tester, insulationFrame(1));
    EXPECT_EQ(program.waitForEnd(), 1);
    EXPECT_THAT(complaintsIn(program.error()), ElementsAre(HasSubstr("0 bytes are kept")));
    EXPECT_EQ(contentOf(file), content);
}

// What calls itself something must not drive the terminal of the one who looks for it.
TEST_F(Stalled, NoNameReachesTheTerminalUnlessItIsPrintable) {
    const std::string name = "\x1b[31mred\x07\xc2\x9b";
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"monitor", "serial:/dev/" + name, "--seconds", "1"},
          {"capture", "serial:/dev/" + name, path("x"), "--seconds", "1"},
          {"devices", "serial:/dev/" + name, "--seconds", "1"},
          {"simulate", "--pty", path(name), "--seconds", "1"},
          {"simulate", "--pty", path("missing/" + name)}}) {
        SCOPED_TRACE(arguments.front());
        const Result result = run(arguments);
        const std::string all = result.output + result.error;
        EXPECT_THAT(all, HasSubstr("red"));
        for (const char* control : {"\x1b", "\x07", "\xc2\x9b"}) EXPECT_THAT(all, Not(HasSubstr(control)));
    }
}

}  // namespace
}  // namespace kestrix::cli
