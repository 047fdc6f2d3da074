// What every command does, by being registered: how it ends, and what it does with a reader who does not
// read.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

#include "apps/kestrix-cli/Commands.h"
#include "storage/ServiceDao.h"
#include "tests/cli/CommandExamples.h"
#include "tests/cli/Program.h"

namespace kestrix::cli {

static void PrintTo(const Command* command, std::ostream* out) {
    *out << command->name;
}

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

class EveryCommand : public ::testing::TestWithParam<const Command*> {
  protected:
    static CommandExample example() {
        const auto& examples = commandExamples();
        const auto found = std::find_if(examples.begin(), examples.end(), [](const CommandExample& each) {
            return each.command == GetParam()->name;
        });
        EXPECT_NE(found, examples.end())
            << "tests/cli/CommandExamples.cpp has no row for " << GetParam()->name;
        return found != examples.end() ? *found : CommandExample{GetParam()->name, {GetParam()->name}, {}};
    }
    std::vector<std::string> endless(const char* seconds = "0") const {
        std::vector<std::string> words = inFolder(example().endless, folder_.path().toStdString());
        words.insert(words.end(), {"--seconds", seconds});
        return words;
    }
    std::vector<std::string> brief() const { return inFolder(example().brief, folder_.path().toStdString()); }

    // It must end, and as its command says.
    static void endBy(int signal, Program& program) {
        ASSERT_TRUE(program.waitUntilItCatches(signal)) << program.output() << program.error();
        program.signal(signal);
        expectEndOf(signal, program);
    }
    static void expectEndOf(int signal, Program& program) {
        const int status = program.waitForEnd();
        if (GetParam()->atSignal == AtSignal::CutsItShort) {
            EXPECT_EQ(status, -signal) << program.error();
        } else {
            EXPECT_GE(status, 0) << program.error();
            EXPECT_LE(complaintsIn(program.error()).size(), 1U) << program.error();
        }
    }

    // A command without an example of brief output is one that writes until it is ended, or writes nothing.
    static bool writesNothingBrief(const std::vector<std::string>& words) {
        if (!words.empty()) return false;
        EXPECT_EQ(GetParam()->atSignal, AtSignal::EndsIt)
            << "it writes something, and needs an example of it";
        return true;
    }
    static bool endsByItself() { return example().endless.empty(); }

    EveryCommand() {
        storage::ServiceDao dao(platform::DocumentsFolder(folder_.path()));
        dao.createTable();
        storage::RecordData record;
        record.projectName = "House";
        dao.addRecordForm(record);
    }

    QTemporaryDir folder_;
};

struct StalledReader {
    const char* name;
    bool terminal;
};
constexpr StalledReader kStalledReaders[] = {{"a full pipe", false}, {"a stopped terminal", true}};

Surroundings stalledBy(const StalledReader& reader) {
    Surroundings setup;
    setup.stalled = true;
    setup.terminal = reader.terminal;
    setup.environment = {"TERM=xterm"};
    return setup;
}

TEST_P(EveryCommand, EndsOnASignal) {
    if (endsByItself()) return;
    for (const int signal : kSignals) {
        SCOPED_TRACE(strsignal(signal));
        Program program(endless());
        endBy(signal, program);
    }
}

TEST_P(EveryCommand, EndsOnASignalWhileNobodyReadsItsOutput) {
    if (endsByItself() && brief().empty()) return;
    for (const StalledReader& reader : kStalledReaders) {
        SCOPED_TRACE(reader.name);
        Program program(endsByItself() ? brief() : endless(), stalledBy(reader));
        endBy(SIGTERM, program);
    }
}

TEST_P(EveryCommand, EndsAtItsTimeLimitWhileNobodyReadsItsOutput) {
    if (endsByItself()) return;
    for (const StalledReader& reader : kStalledReaders) {
        SCOPED_TRACE(reader.name);
        Program program(endless("1"), stalledBy(reader));
        EXPECT_GE(program.waitForEnd(), 0);
    }
}

// nohup, and what a script starts with &.
TEST_P(EveryCommand, LeavesAnIgnoredSignalIgnored) {
    if (endsByItself()) return;
    Surroundings setup;
    setup.ignored = {SIGINT, SIGHUP};
    Program program(endless(), setup);
    ASSERT_TRUE(program.waitUntilItCatches(SIGTERM));
    for (const int signal : setup.ignored) {
        EXPECT_TRUE(program.ignores(signal)) << strsignal(signal);
        program.signal(signal);
    }
    endBy(SIGTERM, program);
}

TEST_P(EveryCommand, WaitsForAReaderWhoComesLate) {
    if (writesNothingBrief(brief())) return;
    Surroundings setup;
    setup.stalled = true;
    Program program(brief(), setup);
    ASSERT_TRUE(program.waitUntilItCatches(SIGTERM)) << "it has ended, and nobody has read what it wrote";
    program.startReading();
    EXPECT_EQ(program.waitForEnd(), 0);
    EXPECT_EQ(program.output(), run(brief()).output);
}

TEST_P(EveryCommand, EndsQuietlyWhenTheReaderHasGone) {
    if (writesNothingBrief(brief())) return;
    Surroundings setup;
    setup.readerGone = true;
    const Result result = run(brief(), {}, setup);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
}

TEST_P(EveryCommand, SaysInOneLineThatTheDiskIsFull) {
    if (writesNothingBrief(brief())) return;
    Surroundings setup;
    setup.output = "/dev/full";
    const Result result = run(brief(), {}, setup);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "kestrix-cli: the output cannot be written: No space left on device\n");
}

INSTANTIATE_TEST_SUITE_P(Commands, EveryCommand,
                         ::testing::ValuesIn(allCommands().begin(), allCommands().end()),
                         [](const auto& parameter) { return std::string(parameter.param->name); });

TEST(CommandExamples, AreOfRegisteredCommands) {
    for (const CommandExample& example : commandExamples()) {
        const auto commands = allCommands();
        EXPECT_TRUE(std::any_of(commands.begin(), commands.end(),
                                [&](const Command* command) { return example.command == command->name; }))
            << example.command
            << " stands in tests/cli/CommandExamples.cpp, and not in apps/kestrix-cli/Commands.cpp";
    }
}

}  // namespace
}  // namespace kestrix::cli
