// The man page and the completions tell of exactly the commands and options that the program has.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "platform/AccessorySources.h"

namespace kestrix::cli {
namespace {

using Words = std::set<std::string>;

// Every first group of the expression, split at blanks.
Words found(const std::string& text, const std::string& expression) {
    const std::regex regex(expression);
    const std::regex word("[^ ]+");
    Words words;
    for (std::sregex_iterator hit(text.begin(), text.end(), regex), none; hit != none; ++hit) {
        const std::string group = (*hit)[1];
        for (std::sregex_iterator w(group.begin(), group.end(), word); w != none; ++w) words.insert(w->str());
    }
    return words;
}

// Lines of a text from the one that begins with `first` on, down to the next empty one.
std::string section(const std::string& text, const std::string& first) {
    const auto begin = text.find("\n" + first);
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find("\n\n", begin) - begin);
}

// What a shell command writes; it must succeed.
std::string outputOf(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");  // NOLINT(cert-env33-c): our own program
    if (pipe == nullptr) return {};
    std::string text;
    std::array<char, 4096> piece{};
    for (std::size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;) {
        text.append(piece.data(), size);
    }
    EXPECT_EQ(pclose(pipe), 0) << command << "\n" << text;
    return text;
}

std::string helpOf(const std::string& command) {
    return outputOf(KESTRIX_BINARY_DIR "/bin/kestrix-cli " + command + " --help 2>&1");
}

const Words& programCommands() {
    static const Words commands = found(section(helpOf(""), "Subcommands:"), "\n  ([a-z][a-z-]*) ");
    return commands;
}

const Words& programOptions() {
    static const Words options = [] {
        const std::string option = "--([a-z][a-z-]*)";
        Words all = found(helpOf(""), option);
        for (const auto& command : programCommands()) all.merge(found(helpOf(command), option));
        return all;
    }();
    return options;
}

struct Document {
    const char* name;
    const char* path;
    const char* commands;  // where a command stands in it
    const char* options;   // and where a long option, without its dashes
};

void PrintTo(const Document& document, std::ostream* out) {
    *out << document.path;
}

class Packaging : public ::testing::TestWithParam<Document> {
  protected:
    static std::string text() {
        std::ifstream file(std::string(KESTRIX_SOURCE_DIR "/packaging/") + GetParam().path);
        EXPECT_TRUE(file.is_open());
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_P(Packaging, TellsOfTheProgramsCommands) {
    ASSERT_THAT(programCommands(), ::testing::SizeIs(::testing::Ge(5U))) << "as the help tells them";
    EXPECT_EQ(found(text(), GetParam().commands), programCommands());
}

TEST_P(Packaging, TellsOfTheProgramsOptions) {
    ASSERT_THAT(programOptions(), ::testing::IsSupersetOf({"help", "version", "settings", "seconds"}));
    EXPECT_EQ(found(text(), GetParam().options), programOptions());
}

const std::vector<Document> kDocuments{
    {"ManPage", "kestrix-cli.1", "\n\\.It Cm ([a-z][a-z-]*)", "(?:\\bFl (?:h [,|] )?-| --)([a-z][a-z-]*)"},
    {"Bash", "completions/kestrix-cli.bash", "local commands='([^']*)'", "--([a-z][a-z-]*)"},
    {"Zsh", "completions/_kestrix-cli", "\n        '([a-z][a-z-]*):", "--([a-z][a-z-]*)"},
    {"Fish", "completions/kestrix-cli.fish", "-n __fish_use_subcommand -a ([a-z][a-z-]*)",
     "(?:\ncomplete [^\n]* -l | --)([a-z][a-z-]*)"},
};

std::string nameOf(const ::testing::TestParamInfo<Document>& parameter) {
    return parameter.param.name;
}

INSTANTIATE_TEST_SUITE_P(Documents, Packaging, ::testing::ValuesIn(kDocuments), nameOf);

// The window's program has options only.
class WindowPackaging : public Packaging {};

TEST_P(WindowPackaging, TellsOfTheProgramsOptions) {
    const Words options = found(outputOf(KESTRIX_BINARY_DIR "/bin/kestrix --help 2>&1"), "--([a-z][a-z-]*)");
    ASSERT_THAT(options, ::testing::IsSupersetOf({"help", "version", "connect", "console"}));
    EXPECT_EQ(found(text(), GetParam().options), options);
}

const std::vector<Document> kWindowDocuments{
    {"ManPage", "kestrix.1", "", "(?:\\bFl (?:h [,|] )?-| --)([a-z][a-z-]*)"},
    {"Bash", "completions/kestrix.bash", "", "--([a-z][a-z-]*)"},
    {"Zsh", "completions/_kestrix", "", "--([a-z][a-z-]*)"},
    {"Fish", "completions/kestrix.fish", "", "\ncomplete [^\n]* -l ([a-z][a-z-]*)"},
};

INSTANTIATE_TEST_SUITE_P(Documents, WindowPackaging, ::testing::ValuesIn(kWindowDocuments), nameOf);

// What bash offers behind this beginning of a command line.
Words offeredByBash(const std::string& line, const std::string& program = "kestrix-cli") {
    const auto offered = outputOf(
        "PATH=" KESTRIX_BINARY_DIR "/bin:$PATH LINE='" + line +
        "' bash -c 'cd " KESTRIX_SOURCE_DIR "/packaging && . " KESTRIX_BINARY_DIR "/packaging/completions/" +
        program +
        ".bash && COMP_LINE=$LINE && "
        "COMP_POINT=${#LINE} && _" +
        std::regex_replace(program, std::regex("-"), "_") + " && printf \"%s\\n\" \"${COMPREPLY[@]}\"'");
    return found(offered, "([^\n]+)\n");
}

Words scenarios() {
    return found(outputOf(KESTRIX_BINARY_DIR "/bin/kestrix-cli simulate --list"), "([^\n]+)\n");
}

TEST(BashCompletion, Commands) {
    EXPECT_EQ(offeredByBash("kestrix-cli "), programCommands());
    EXPECT_EQ(offeredByBash("kestrix-cli --settings x.ini d"), (Words{"decode", "delete", "devices"}));
}

TEST(BashCompletion, EveryCommandOffersItsOwnOptions) {
    for (const auto& command : programCommands()) {
        Words expected = found(helpOf(command), "(--[a-z][a-z-]*)");
        expected.insert({"--settings", "--verbose"});
        EXPECT_EQ(offeredByBash("kestrix-cli " + command + " --"), expected) << command;
    }
}

TEST(BashCompletion, Scenarios) {
    ASSERT_FALSE(scenarios().empty());
    EXPECT_THAT(offeredByBash("kestrix-cli simulate --scenario "), ::testing::IsSupersetOf(scenarios()));
    EXPECT_THAT(offeredByBash("kestrix-cli monitor simulator:"), ::testing::IsSupersetOf(scenarios()));
}

TEST(BashCompletion, UrisAndFiles) {
    Words kinds;  // "tcp://", "serial:"
    for (const platform::SourceKind& kind : platform::sourceKinds()) {
        const std::string form(kind.form);
        kinds.insert(form.substr(0, form.find(':') + (form.find("://") == std::string::npos ? 1 : 3)));
    }
    EXPECT_EQ(offeredByBash("kestrix-cli monitor "), kinds);
    EXPECT_EQ(offeredByBash("kestrix-cli devices serial:x s"), (Words{"serial:", "simulator:"}));
    EXPECT_EQ(offeredByBash("kestrix-cli monitor replay:kestrix-cli."), (Words{"kestrix-cli.1"}));
    EXPECT_EQ(offeredByBash("kestrix-cli decode CMake"), (Words{"CMakeLists.txt"}));
    EXPECT_EQ(offeredByBash("kestrix-cli capture simulator: CMake"), (Words{"CMakeLists.txt"}));
    EXPECT_EQ(offeredByBash("kestrix-cli simulate --speed m"), (Words{"max"}));
}

TEST(BashCompletion, OfTheWindow) {
    EXPECT_EQ(offeredByBash("kestrix --c", "kestrix"), (Words{"--connect", "--choose", "--console"}));
    EXPECT_EQ(offeredByBash("kestrix --connect s", "kestrix"), (Words{"serial:", "simulator:"}));
    EXPECT_EQ(offeredByBash("kestrix --choose replay:kestrix-cli.", "kestrix"), (Words{"kestrix-cli.1"}));
    EXPECT_EQ(offeredByBash("kestrix --documents comp", "kestrix"), (Words{"completions"}));
}

}  // namespace
}  // namespace kestrix::cli
