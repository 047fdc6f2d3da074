// `kestrix-cli monitor`, as a whole program: in a terminal and elsewhere.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

#include "apps/kestrix-cli/LargeDigits.h"
#include "tests/cli/Frames.h"
#include "tests/cli/Program.h"
#include "tests/cli/Screen.h"
#include "tests/cli/Sockets.h"

namespace kestrix::cli {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// A tester that shows two readings in turn.
class Monitor : public ::testing::Test {
  protected:
    Monitor() {
        writeFile(scenario_,
                  "rate 20\nrepeat forever\nfunction insulation voltage=500 reference=1.0\n"
                  "reading 1 11.0 Mohm\nreading 2 523 V\nshow 3 frames\n"
                  "reading 1 22.0 Mohm\nshow 3 frames\n");
    }
    std::string simulator() const { return "simulator:" + scenario_; }

    QTemporaryDir folder_;
    const std::string scenario_ = folder_.path().toStdString() + "/two.scenario";
};

Surroundings inTerminal(unsigned short rows = 30, unsigned short columns = 100) {
    Surroundings setup;
    setup.terminal = true;
    setup.rows = rows;
    setup.columns = columns;
    setup.environment = {"TERM=xterm-256color"};
    return setup;
}

// What stands in the terminal of a program.
class Watched {
  public:
    Watched(std::vector<std::string> arguments, const Surroundings& setup)
        : program(std::move(arguments), setup), screen(setup.rows, setup.columns) {}

    bool waitUntilShown(const std::function<bool(const std::string&)>& condition) {
        const bool shown = program.waitUntil([&] { return condition(shownNow()); });
        EXPECT_TRUE(shown) << shownNow();
        return shown;
    }
    bool waitFor(const std::string& text) {
        return waitUntilShown(
            [&](const std::string& shown) { return shown.find(text) != std::string::npos; });
    }
    std::string shownNow() {
        screen.write(std::string_view(program.output()).substr(taken_));
        taken_ = program.output().size();
        return screen.text();
    }

    Program program;
    Screen screen;

  private:
    std::size_t taken_ = 0;
};

// Whether the main reading stands there in its large digits.
bool showsLarge(const std::string& shown, const std::string& value) {
    const auto rows = largeDigits(value);
    return std::all_of(rows.begin(), rows.end(),
                       [&](const std::string& row) { return shown.find(row) != std::string::npos; });
}

TEST_F(Monitor, OneLineForEachChangeWithoutATerminal) {
    Program program({"monitor", simulator(), "--seconds", "0"});
    ASSERT_TRUE(program.waitUntil([&] { return linesOf(program.output()).size() >= 6; })) << program.error();
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0) << program.error();
    EXPECT_THAT(complaintsIn(program.error()), ElementsAre());
    EXPECT_THAT(program.output(), Not(HasSubstr("\x1b")));
    const std::vector<std::string> lines = linesOf(program.output());
    EXPECT_EQ(lines[0], "Not Connected");
    EXPECT_EQ(lines[1], "Connected");
    for (std::size_t i = 2; i < lines.size(); ++i) {
        EXPECT_THAT(lines[i],
                    StartsWith(i % 2 == 0 ? "INSULATION  11.0 MΩ  523 V  " : "INSULATION  22.0 MΩ  523 V  "));
    }
}

TEST_F(Monitor, SaysWhenTheTesterGoes) {
    SimulatedTester tester({"--scenario", scenario_});
    Program program({"monitor", tester.uri(), "--seconds", "0"});
    ASSERT_TRUE(program.waitForOutput("22.0"));
    tester.program().signal(SIGKILL);
    ASSERT_TRUE(program.waitUntil([&] { return linesOf(program.output()).back() == "Not Connected"; }));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(linesOf(program.output()).back(), "Not Connected");
}

TEST_F(Monitor, AWrongAddressIsWrongUsage) {
    for (const bool terminal : {false, true}) {
        Surroundings setup = inTerminal();
        setup.terminal = terminal;
        const Result result = run({"monitor", "radio:x"}, {}, setup);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(linesOf(result.output + result.error), ElementsAre(StartsWith("kestrix-cli: radio:x: ")));
    }
}

TEST_F(Monitor, ATesterThatIsNeverThere) {
    std::string uri;
    {
        const Listener gone;
        uri = gone.uri();
    }
    Program program({"monitor", uri, "--seconds", "0"});
    ASSERT_TRUE(program.waitForError("refused"));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.output(), "Not Connected\n");
    EXPECT_THAT(complaintsIn(program.error()),
                ElementsAre(AllOf(StartsWith("kestrix-cli: " + uri + ": "), HasSubstr("refused"))));
}

TEST_F(Monitor, AReaderThatGoesAwayEndsItQuietly) {
    Program program({"monitor", simulator(), "--seconds", "0"});
    ASSERT_TRUE(program.waitForOutput("11.0"));
    program.closeOutput();
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(complaintsIn(program.error()), ElementsAre());
}

TEST_F(Monitor, AFullDiskFailsWithOneLine) {
    Surroundings full;
    full.output = "/dev/full";
    const Result result = run({"monitor", simulator(), "--seconds", "0"}, {}, full);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(complaintsIn(result.error),
                ElementsAre(AllOf(StartsWith("kestrix-cli: "), HasSubstr("No space left"))));
}

TEST_F(Monitor, DrawsTheDisplayInATerminal) {
    Watched watched({"monitor", simulator()}, inTerminal());
    ASSERT_TRUE(watched.waitFor("● Connected"));
    ASSERT_TRUE(watched.waitUntilShown([](const std::string& shown) { return showsLarge(shown, "11.0"); }));
    ASSERT_TRUE(watched.waitUntilShown([](const std::string& shown) { return showsLarge(shown, "22.0"); }));
    const std::string shown = watched.shownNow();
    EXPECT_FALSE(showsLarge(shown, "11.0"));
    EXPECT_THAT(shown, AllOf(StartsWith("┌─ simulator:"), HasSubstr("523 V"), HasSubstr(" INSULATION ")));
    EXPECT_THAT(shown, Not(HasSubstr("Not Connected")));
    EXPECT_TRUE(watched.screen.coloured());
    EXPECT_FALSE(watched.screen.cursorVisible());

    watched.program.signal(SIGINT);
    EXPECT_EQ(watched.program.wait(), 0);
    watched.shownNow();
    EXPECT_TRUE(watched.screen.cursorVisible());
    EXPECT_EQ(watched.screen.unknown(), "");
}

TEST_F(Monitor, ShowsTheCursorAgainHoweverItEnds) {
    Watched terminated({"monitor", simulator()}, inTerminal());
    ASSERT_TRUE(terminated.waitFor("● Connected"));
    terminated.program.signal(SIGTERM);
    EXPECT_EQ(terminated.program.wait(), 0);
    terminated.shownNow();
    EXPECT_TRUE(terminated.screen.cursorVisible());

    Watched ended({"monitor", "serial:/dev/no-such-port", "--seconds", "1"}, inTerminal());
    ASSERT_TRUE(ended.waitFor("Not Connected"));
    EXPECT_EQ(ended.program.wait(), 1);
    EXPECT_THAT(ended.shownNow(), HasSubstr("kestrix-cli: serial:/dev/no-such-port: no tester found"));
    EXPECT_TRUE(ended.screen.cursorVisible());
}

TEST_F(Monitor, NoColoursWhereTheyAreNotWanted) {
    Surroundings setup = inTerminal();
    setup.environment.emplace_back("NO_COLOR=1");
    Watched watched({"monitor", simulator()}, setup);
    ASSERT_TRUE(watched.waitFor("523 V"));
    EXPECT_THAT(watched.shownNow(), HasSubstr("[INSULATION]"));
    EXPECT_FALSE(watched.screen.coloured());
}

TEST_F(Monitor, NoReadingStaysWhenTheTesterHasGone) {
    SimulatedTester tester({"--scenario", scenario_});
    Watched watched({"monitor", tester.uri()}, inTerminal());
    ASSERT_TRUE(watched.waitFor("523 V"));
    tester.program().signal(SIGKILL);
    ASSERT_TRUE(watched.waitFor("Not Connected"));
    const std::string shown = watched.shownNow();
    EXPECT_THAT(shown, AllOf(Not(HasSubstr("523 V")), Not(HasSubstr("MΩ")), Not(HasSubstr("● Connected"))));
    EXPECT_FALSE(showsLarge(shown, "11.0"));
    EXPECT_FALSE(showsLarge(shown, "22.0"));
    watched.program.signal(SIGINT);
    EXPECT_EQ(watched.program.wait(), 0) << "frames came";
}

// A part of the display stands there then, row below row as in a higher window.
TEST_F(Monitor, NorInAWindowThatIsTooLowForIt) {
    SimulatedTester tester({"--scenario", scenario_});
    Watched watched({"monitor", tester.uri()}, inTerminal(10));
    constexpr std::size_t manyRedraws = 8000;  // bytes
    ASSERT_TRUE(watched.program.waitUntil([&] { return watched.program.output().size() > manyRedraws; }));
    tester.program().signal(SIGKILL);
    ASSERT_TRUE(watched.waitFor("Not Connected"));
    const std::string shown = watched.shownNow();
    EXPECT_THAT(shown, AllOf(Not(HasSubstr("523 V")), Not(HasSubstr("MΩ")), Not(HasSubstr("● Connected"))));
    EXPECT_FALSE(showsLarge(shown, "11.0"));
    EXPECT_FALSE(showsLarge(shown, "22.0"));

    std::vector<std::string> lines = linesOf(shown);
    while (!lines.empty() && lines.back().empty()) lines.pop_back();
    for (const std::string& line : lines)
        EXPECT_THAT(line, ::testing::ContainsRegex("^(│|├|┌|└).*(│|┤|┐|┘)$")) << shown;
}

// Stopped in mid-air, the tester's line stays open: only its silence tells.
TEST_F(Monitor, ASilentTesterIsGoneAndComesBack) {
    SimulatedTester tester({"--scenario", scenario_});
    Watched watched({"monitor", tester.uri()}, inTerminal());
    ASSERT_TRUE(watched.waitFor("523 V"));
    tester.program().signal(SIGSTOP);
    ASSERT_TRUE(watched.waitFor("Not Connected"));
    EXPECT_THAT(watched.shownNow(), Not(HasSubstr("523 V")));
    tester.program().signal(SIGCONT);
    ASSERT_TRUE(watched.waitFor("523 V"));
    EXPECT_THAT(watched.shownNow(), HasSubstr("● Connected"));
}

TEST_F(Monitor, FollowsTheWindowsWidth) {
    Watched watched({"monitor", simulator()}, inTerminal(30, 100));
    ASSERT_TRUE(watched.waitFor("523 V"));
    const std::size_t before = watched.program.output().size();
    watched.program.resize(30, 50);
    std::size_t anew = std::string::npos;
    ASSERT_TRUE(watched.program.waitUntil([&] {
        anew = watched.program.output().find("\x1b[2J", before);
        return anew != std::string::npos;
    }));
    Screen narrow(30, 50);
    ASSERT_TRUE(watched.program.waitUntil([&] {
        narrow.write(std::string_view(watched.program.output()).substr(anew));
        anew = watched.program.output().size();
        return narrow.text().find("└") != std::string::npos;
    }));
    const std::vector<std::string> lines = linesOf(narrow.text());
    EXPECT_THAT(lines[0], AllOf(StartsWith("┌"), ::testing::EndsWith("┐")));
    EXPECT_THAT(narrow.text(), HasSubstr("523 V"));
    EXPECT_THAT(narrow.text(), Not(HasSubstr("\n\n┌")));
}

}  // namespace
}  // namespace kestrix::cli
