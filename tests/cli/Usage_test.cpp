// How `kestrix-cli` is called: what is wrong usage, what help there is, and what stands where.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/cli/Program.h"

namespace kestrix::cli {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

using Arguments = std::vector<std::string>;

class WrongUsage : public ::testing::TestWithParam<Arguments> {};

TEST_P(WrongUsage, EndsWithTwoAndOneLine) {
    const Result result = run(GetParam());
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(linesOf(result.error), ElementsAre(StartsWith("kestrix-cli: ")));
    EXPECT_EQ(result.error.back(), '\n');
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, WrongUsage,
    ::testing::Values(Arguments{}, Arguments{"bogus"}, Arguments{"--bogus"}, Arguments{"decode", "--bogus"},
                      Arguments{"decode", "a", "b"}, Arguments{"simulate", "--list", "extra"},
                      Arguments{"decode", "--frame"}, Arguments{"decode", "monitor", "simulator:"},
                      Arguments{"monitor"}, Arguments{"monitor", "simulator:", "simulator:"},
                      Arguments{"monitor", "simulator"}, Arguments{"monitor", "radio:x"},
                      Arguments{"monitor", "tcp://127.0.0.1"}, Arguments{"monitor", "tcp://127.0.0.1:0"},
                      Arguments{"monitor", "tcp://a:1?b=2"}, Arguments{"monitor", "serial:"},
                      Arguments{"monitor", "serial:/dev/x?baud=fast"}, Arguments{"monitor", "replay:"},
                      Arguments{"monitor", "replay:x?speed=0"},
                      Arguments{"monitor", "simulator:", "--seconds", "x"},
                      Arguments{"monitor", "simulator:", "--seconds", "-1"}, Arguments{"capture"},
                      Arguments{"capture", "simulator:"}, Arguments{"capture", "nonsense", "/dev/null"},
                      Arguments{"devices", "nonsense"}, Arguments{"devices", "--seconds", "-1"},
                      Arguments{"monitor", "line\nbreak"}, Arguments{"--settings"}));

TEST(Usage, AnErrorNamesTheWordThatIsWrong) {
    EXPECT_THAT(run({"bogus"}).error, HasSubstr("bogus"));
    EXPECT_THAT(run({"--bogus", "decode"}).error, HasSubstr("--bogus"));
    EXPECT_THAT(run({"monitor", "radio:x"}).error, HasSubstr("radio:x"));
}

TEST(Usage, HelpTellsOfEveryCommand) {
    const Result help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.error, "");
    for (const char* command : {"decode", "monitor", "capture", "simulate", "devices"})
        EXPECT_THAT(help.output, HasSubstr(std::string("\n  ") + command + " "));
    EXPECT_THAT(help.output, AllOf(HasSubstr("--version"), HasSubstr("--settings FILE")));
    EXPECT_EQ(run({"-h"}).output, help.output);
}

TEST(Usage, EveryCommandHasItsHelp) {
    const std::vector<std::pair<std::string, std::string>> commands{{"decode", "--frame HEX"},
                                                                    {"monitor", "--seconds N"},
                                                                    {"capture", "--force"},
                                                                    {"simulate", "--tcp HOST:PORT"},
                                                                    {"devices", "--seconds N"}};
    for (const auto& [command, option] : commands) {
        const Result help = run({command, "--help"});
        EXPECT_EQ(help.status, 0) << command;
        EXPECT_EQ(help.error, "") << command;
        EXPECT_THAT(help.output, AllOf(HasSubstr("kestrix-cli " + command), HasSubstr(option)));
        EXPECT_THAT(linesOf(help.output), Each(::testing::Not(StartsWith("Subcommands:")))) << command;
    }
}

TEST(Usage, Version) {
    const Result version = run({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.error, "");
    EXPECT_THAT(version.output, ::testing::MatchesRegex("kestrix-cli [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(Usage, WhatIsAskedForMustReachItsReader) {
    Surroundings full;
    full.output = "/dev/full";
    for (const Arguments& arguments : {Arguments{"--help"}, Arguments{"--version"},
                                       Arguments{"simulate", "--list"}, Arguments{"devices"}}) {
        const Result result = run(arguments, {}, full);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(linesOf(result.error),
                    ElementsAre(AllOf(StartsWith("kestrix-cli: "), HasSubstr("No space left on device"))));
    }
}

// >&- in a shell.
TEST(Usage, AnOutputThatIsClosedIsAWriteThatFails) {
    Surroundings closed;
    closed.closed = {1};
    for (const Arguments& arguments :
         {Arguments{"--help"}, Arguments{"--version"}, Arguments{"decode", "--frame", "7e0d1e"},
          Arguments{"simulate", "--list"}, Arguments{"devices"},
          Arguments{"monitor", "simulator:", "--seconds", "1"}, Arguments{"capture", "simulator:", "-"}}) {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        const Result result = run(arguments, {}, closed);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(complaintsIn(result.error),
                    ElementsAre(AllOf(StartsWith("kestrix-cli: "), HasSubstr("Bad file descriptor"))));
    }
}

TEST(Usage, NoControlCharacterOfAnArgumentReachesTheTerminal) {
    const Result result = run({"decode",
                               "a\x1b[31m\x7f\xc2\x9b"
                               "b\rc"});
    EXPECT_EQ(result.status, 1);
    for (const char* control : {"\x1b", "\x7f", "\xc2\x9b", "\r"})
        EXPECT_THAT(result.error, ::testing::Not(HasSubstr(control)));
    EXPECT_THAT(linesOf(result.error), ElementsAre(StartsWith("kestrix-cli: a")));
}

// Most of the time that a start takes goes into loading libraries.
TEST(Start, WhatNeedsNoLinkLoadsNothingOfQt) {
    Surroundings setup;
    setup.environment = {
        "LD_TRACE_LOADED_OBJECTS=1"};  // the system names the libraries instead of starting it
    const Result libraries = run({"decode"}, {}, setup);
    EXPECT_THAT(libraries.output, HasSubstr("libc.so"));
    EXPECT_THAT(libraries.output, Not(HasSubstr("Qt")));
}

// The program becomes another one, which says so where it is missing.
TEST(Start, AnInstallationWithoutItsOtherHalfSaysSo) {
    const QTemporaryDir folder;
    const std::string alone = folder.path().toStdString() + "/bin";
    std::filesystem::create_directory(alone);
    std::filesystem::copy_file(KESTRIX_BINARY_DIR "/bin/kestrix-cli", alone + "/kestrix-cli");
    Surroundings setup;
    setup.ownSettings = false;
    setup.program = std::filesystem::relative(alone + "/kestrix-cli", KESTRIX_BINARY_DIR "/bin").string();
    EXPECT_EQ(run({"--version"}, {}, setup).status, 0);
    const Result devices = run({"devices"}, {}, setup);
    EXPECT_EQ(devices.status, 1);
    EXPECT_THAT(linesOf(devices.error),
                ElementsAre(AllOf(StartsWith("kestrix-cli: the installation is not complete: "),
                                  HasSubstr("No such file or directory"))));
}

TEST(Settings, AForeignFileIsRefusedWithOneLine) {
    const QTemporaryDir folder;
    const std::string foreign = folder.path().toStdString() + "/foreign.ini";
    writeFile(foreign, "[user]\nname=Jo\n");
    const Result result = run({"monitor", "simulator:", "--settings", foreign});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(linesOf(result.error), ElementsAre(AllOf(StartsWith("kestrix-cli: "), HasSubstr(foreign))));
    EXPECT_EQ(contentOf(foreign), "[user]\nname=Jo\n");
}

TEST(Verbose, SaysWhatHappens) {
    Surroundings setup;
    setup.environment = {"QT_LOGGING_RULES="};
    const std::vector<std::string> monitor{"monitor", "tcp://127.0.0.1:1", "--seconds", "1"};
    EXPECT_THAT(run(monitor, {}, setup).error, Not(HasSubstr("info kestrix.accessory: ")));
    std::vector<std::string> verbose = monitor;
    verbose.push_back("--verbose");
    EXPECT_THAT(run(verbose, {}, setup).error, HasSubstr("info kestrix.accessory: "));
}

}  // namespace
}  // namespace kestrix::cli
