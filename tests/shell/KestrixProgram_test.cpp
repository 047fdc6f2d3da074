// kestrix as a whole program, without a display.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>

#include <algorithm>
#include <csignal>

#include "tests/cli/Program.h"
#include "tests/storage/Connection.h"

namespace kestrix {
namespace {

using cli::Program;
using cli::Surroundings;

class KestrixProgram : public testing::Test {
  protected:
    Surroundings setup() const {
        Surroundings made;
        made.program = "kestrix";
        made.environment = {"QT_QPA_PLATFORM=offscreen", "QT_QUICK_BACKEND=software",
                            "XDG_RUNTIME_DIR=" + folder_.path().toStdString()};
        return made;
    }
    cli::Result run(std::vector<std::string> arguments) const {
        return cli::run(std::move(arguments), {}, setup());
    }
    std::string path(const char* name) const {
        return folder_.filePath(QString::fromLatin1(name)).toStdString();
    }

    QTemporaryDir folder_;
};

void expectOneLine(const std::string& error, const std::string& part) {
    const auto lines = cli::linesOf(error);
    ASSERT_EQ(lines.size(), 1U) << error;
    EXPECT_EQ(lines[0].rfind("kestrix: ", 0), 0U) << error;
    EXPECT_NE(lines[0].find(part), std::string::npos) << error;
}

TEST_F(KestrixProgram, HelpTellsEveryOption) {
    const cli::Result result = run({"--help"});
    EXPECT_EQ(result.status, 0);
    for (const char* option : {"--connect", "--documents", "--settings", "--version", "--help"})
        EXPECT_NE(result.output.find(option), std::string::npos) << option;
    EXPECT_EQ(result.error, "");
}

TEST_F(KestrixProgram, TellsItsVersion) {
    const cli::Result result = run({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output.rfind("kestrix ", 0), 0U) << result.output;
    EXPECT_EQ(cli::linesOf(result.output).size(), 1U);
}

TEST_F(KestrixProgram, WrongUsageIsOneLineAndTwo) {
    const std::vector<std::vector<std::string>> wrong{
        {"--nonsense"}, {"stray"}, {"--connect"}, {"--documents"}};
    for (const auto& arguments : wrong) {
        const cli::Result result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments[0];
        expectOneLine(result.error, arguments[0] == "stray" ? "stray" : arguments[0]);
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(KestrixProgram, AWrongUriIsOneLineAndTwoAndMakesNothing) {
    for (const char* uri : {"morse:key", "tcp://nowhere", "simulator:no-such-scenario"}) {
        const cli::Result result = run({"--connect", uri, "--documents", path("documents")});
        EXPECT_EQ(result.status, 2) << uri;
        expectOneLine(result.error, uri);
        EXPECT_NE(access(path("documents").c_str(), F_OK), 0) << uri;
    }
}

TEST_F(KestrixProgram, ShowsTheSimulatorKeepsItsDatabaseAndEndsOnASignal) {
    for (const int number : {SIGTERM, SIGINT}) {
        Program program({"--connect", "simulator:", "--documents", path("documents")}, setup());
        ASSERT_TRUE(program.waitForError("状态:1")) << program.error();
        program.signal(number);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_EQ(cli::complaintsIn(program.error()), std::vector<std::string>{});
        EXPECT_EQ(program.output(), "");
        storage::Connection database(path("documents/kestrix.sqlite"));
        EXPECT_EQ(database.value("SELECT count(*) FROM measurefrom"), "0");
        EXPECT_EQ(database.value("SELECT count(*) FROM recordfrom"), "0");
    }
}

TEST_F(KestrixProgram, KeepsTheLinkStateInItsSettings) {
    Program program(
        {"--connect", "simulator:", "--documents", path("documents"), "--settings", path("own.ini")},
        setup());
    ASSERT_TRUE(program.waitForError("状态:1"));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_NE(cli::contentOf(path("own.ini")).find("bluestate=1"), std::string::npos);
}

// Every line that is no information comes from the settings (once) or from the database.
void expectOneComplaintBesidesTheDatabase(const std::string& error, const std::string& part) {
    std::vector<std::string> lines = cli::complaintsIn(error);
    EXPECT_GT(
        std::erase_if(
            lines, [](const std::string& line) { return line.rfind("warning kestrix.storage: ", 0) == 0; }),
        0U);
    if (part.empty()) {
        EXPECT_EQ(lines, std::vector<std::string>{});
        return;
    }
    ASSERT_EQ(lines.size(), 1U) << error;
    EXPECT_NE(lines[0].find(part), std::string::npos) << error;
}

TEST_F(KestrixProgram, ADocumentsFolderThatCannotBeMadeIsSaidAndTheDisplayIsLive) {
    cli::writeFile(path("file"), "");
    Program program({"--connect", "simulator:", "--documents", path("file/documents")}, setup());
    ASSERT_TRUE(program.waitForError("状态:1"));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    expectOneComplaintBesidesTheDatabase(program.error(),
                                         "documents folder " + path("file/documents") + " cannot be made");
}

TEST_F(KestrixProgram, ADocumentsFolderThatCannotBeWrittenLeavesTheDisplayLive) {
    ASSERT_EQ(mkdir(path("documents").c_str(), 0555), 0);
    Surroundings bound = setup();
    bound.unprivileged = true;
    Program program({"--connect", "simulator:", "--documents", path("documents")}, bound);
    ASSERT_TRUE(program.waitForError("状态:1"));
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    expectOneComplaintBesidesTheDatabase(program.error(), "");
}

}  // namespace
}  // namespace kestrix
