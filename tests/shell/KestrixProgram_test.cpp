// kestrix as a whole program, without a display.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <utility>

#include "tests/cli/Frames.h"
#include "tests/cli/Program.h"
#include "tests/cli/Sockets.h"
#include "tests/storage/Connection.h"
#include "tests/support/EventLoop.h"

namespace kestrix {
namespace {

using cli::Program;
using cli::Surroundings;

class KestrixProgram : public ::testing::Test {
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
    for (const char* option : {"--choose", "--connect", "--documents", "--settings", "--tour", "--console",
                               "--verbose", "--version", "--help"})
        EXPECT_NE(result.output.find(option), std::string::npos) << option;
    EXPECT_EQ(result.error, "");
}

TEST_F(KestrixProgram, AReaderOfItsLogWhoGoesDoesNotEndIt) {
    Program program({"--connect", "simulator:", "--documents", path("folder")}, setup());
    ASSERT_TRUE(program.waitUntilItCatches(SIGTERM));
    EXPECT_TRUE(testing::spinUntil([&] { return program.ignores(SIGPIPE); }));
    program.signal(SIGTERM);
    program.waitForEnd();
}

// The renderer draws only parts of what has changed where a point is less than a pixel.
TEST_F(KestrixProgram, AScaleBelowOneIsOne) {
    Surroundings made = setup();
    made.ownSettings = false;
    made.environment.emplace_back("QT_SCALE_FACTOR=0.5");
    made.environment.emplace_back("QT_SCREEN_SCALE_FACTORS=0.5");
    EXPECT_EQ(cli::run({"--tour", path("tour")}, {}, made).status, 0);
    const std::string picture = cli::contentOf(path("tour/1x/01-not-connected.png"));
    ASSERT_GT(picture.size(), 24U);
    EXPECT_EQ(picture.substr(16, 8), std::string("\0\0\1\x40\0\0\2\x38", 8)) << "320 by 568";
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

TEST_F(KestrixProgram, AWrongUriIsTwoAndAMissingThingOneAndBothAreOneLineAndMakeNothing) {
    const std::pair<const char*, int> uris[] = {{"morse:key", 2},
                                                {"tcp://nowhere", 2},
                                                {"simulator:?seed=x", 2},
                                                {"simulator:no-such-scenario", 1},
                                                {"replay:/no/such/file", 1}};
    for (const auto& [uri, status] : uris) {
        const cli::Result result = run({"--connect", uri, "--documents", path("documents")});
        EXPECT_EQ(result.status, status) << uri;
        expectOneLine(result.error, uri);
        EXPECT_NE(access(path("documents").c_str(), F_OK), 0) << uri;
    }
}

TEST_F(KestrixProgram, AnEmptyOrFolderlessNameIsWrongUsage) {
    for (const char* option : {"--documents", "--settings", "--tour"}) {
        const cli::Result result = run({option, ""});
        EXPECT_EQ(result.status, 2) << option;
        expectOneLine(result.error, option);
    }
}

TEST_F(KestrixProgram, DocumentsThatAreNoFolderAreWrongUsageAndStayAsTheyAre) {
    cli::writeFile(path("file"), "mine");
    const cli::Result result = run({"--connect", "simulator:", "--documents", path("file")});
    EXPECT_EQ(result.status, 2);
    expectOneLine(result.error, path("file") + " is no folder");
    EXPECT_EQ(cli::contentOf(path("file")), "mine");
}

TEST_F(KestrixProgram, ASettingsFileThatIsNotOursIsOneLineAndStaysAsItIs) {
    cli::writeFile(path("foreign.ini"), "[user]\nname=Jo\n");
    const cli::Result result =
        run({"--connect", "simulator:", "--documents", path("documents"), "--settings", path("foreign.ini")});
    EXPECT_EQ(result.status, 1);
    expectOneLine(result.error, path("foreign.ini") + " is not one of Kestrix's");
    EXPECT_EQ(cli::contentOf(path("foreign.ini")), "[user]\nname=Jo\n");
    EXPECT_NE(access(path("documents").c_str(), F_OK), 0);
}

TEST_F(KestrixProgram, ASettingsFileThatCannotBeReadIsOneLineAndStaysAsItIs) {
    cli::writeFile(path("secret.ini"), "[Kestrix]\n");
    ASSERT_EQ(chmod(path("secret.ini").c_str(), 0), 0);
    Surroundings bound = setup();
    bound.unprivileged = true;
    const cli::Result result = cli::run(
        {"--connect", "simulator:", "--documents", path("documents"), "--settings", path("secret.ini")}, {},
        bound);
    EXPECT_EQ(result.status, 1);
    expectOneLine(result.error, path("secret.ini") + " cannot be read (Permission denied)");
}

TEST_F(KestrixProgram, ASecondStartBringsTheFirstWindowForward) {
    const std::vector<std::string> arguments{"--connect", "simulator:", "--documents", path("documents")};
    Program first(arguments, setup());
    ASSERT_TRUE(first.waitForError("状态:1")) << first.error();
    const cli::Result second = run(arguments);
    EXPECT_EQ(second.status, 0);
    expectOneLine(second.error,
                  "a window on " + path("documents") + " is open already, and was brought forward");
    const cli::Result plain = run({"--documents", path("documents")});
    EXPECT_EQ(plain.status, 0);
    first.signal(SIGKILL);
    EXPECT_EQ(first.wait(), -SIGKILL);
    Program third(arguments, setup());  // whom a killed one does not hold off
    ASSERT_TRUE(third.waitForError("状态:1")) << third.error();
    third.signal(SIGTERM);
    EXPECT_EQ(third.wait(), 0);
}

TEST_F(KestrixProgram, ASecondStartForAnotherTesterIsToldThatTheFirstGoesOnWithItsOwn) {
    Program first({"--connect", "simulator:", "--documents", path("documents")}, setup());
    ASSERT_TRUE(first.waitForError("状态:1")) << first.error();
    const cli::Result second = run({"--connect", "simulator:earth", "--documents", path("documents")});
    EXPECT_EQ(second.status, 1);
    expectOneLine(second.error, "a window on " + path("documents") +
                                    " is open already, and was brought forward; it goes on with its own "
                                    "testers");
}

TEST_F(KestrixProgram, AChoiceMadeElsewhereIsTakenOverByTheWindowThatIsOpen) {
    Program first(
        {"--connect", "simulator:", "--documents", path("documents"), "--settings", path("own.ini")},
        setup());
    ASSERT_TRUE(first.waitForError("状态:1")) << first.error();
    const cli::Result second = run({"--choose", "simulator:earth", "--documents", path("documents")});
    EXPECT_EQ(second.status, 0) << second.error;
    EXPECT_NE(cli::contentOf(path("own.ini")).find("tester=simulator:earth"), std::string::npos);
}

TEST_F(KestrixProgram, AChoiceMadeElsewhereIsKeptWhereNoWindowIsOpen) {
    Program first(
        {"--choose", "simulator:earth", "--documents", path("documents"), "--settings", path("own.ini")},
        setup());
    ASSERT_TRUE(first.waitForError("状态:1")) << first.error();
    EXPECT_NE(cli::contentOf(path("own.ini")).find("tester=simulator:earth"), std::string::npos);
}

// A toolkit whose windows cannot be loaded: the program starts, says what happens, and ends. What lies beside
// the program comes before what is installed.
class WithoutViews : public KestrixProgram {
  protected:
    void SetUp() override {
        ASSERT_EQ(mkdir(path("QtQuick").c_str(), 0700), 0);
        cli::writeFile(path("QtQuick/qmldir"), "module QtQuick\nplugin missing\n");
        std::filesystem::copy_file(KESTRIX_BINARY_DIR "/bin/kestrix", path("kestrix"));
    }
    cli::Result start(std::vector<std::string> options,
                      const std::string& rules = "QT_LOGGING_RULES=") const {
        Surroundings broken = setup();
        broken.program = std::filesystem::relative(path("kestrix"), KESTRIX_BINARY_DIR "/bin");
        broken.environment.push_back("XDG_CONFIG_HOME=" + path("config"));
        broken.environment.push_back(rules);
        options.insert(options.end(), {"--connect", "simulator:", "--documents", path("documents")});
        return cli::run(options, {}, broken);
    }
    static bool saysInformation(const cli::Result& result) {
        return result.error.find("info kestrix.live: 状态:0") != std::string::npos;
    }
};

TEST_F(WithoutViews, ItEndsWithALineThatSaysIt) {
    const cli::Result result = start({});
    EXPECT_EQ(result.status, 1);
    const auto lines = cli::linesOf(result.error);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "kestrix: the views do not load");
}

TEST_F(WithoutViews, InformationIsSaidOnlyToWhoAsksForIt) {
    EXPECT_FALSE(saysInformation(start({})));
    EXPECT_TRUE(saysInformation(start({"--verbose"})));
    EXPECT_TRUE(saysInformation(start({}, "QT_LOGGING_RULES=kestrix.*=true")));
    EXPECT_FALSE(saysInformation(start({"--verbose"}, "QT_LOGGING_RULES=kestrix.live.info=false")));
    ASSERT_EQ(mkdir(path("config").c_str(), 0700), 0);
    ASSERT_EQ(mkdir(path("config/QtProject").c_str(), 0700), 0);
    cli::writeFile(path("config/QtProject/qtlogging.ini"), "[Rules]\nkestrix.live.info=true\n");
    EXPECT_TRUE(saysInformation(start({})));
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

// Before it closes the session of a tester that has gone it waits for a second, which is longer than its
// patience with itself.
TEST_F(KestrixProgram, EndsInOrderOnASignalWhileItWaitsForALostTester) {
    const cli::Listener listener;
    Program program({"--connect", listener.uri(), "--documents", path("documents")}, setup());
    cli::Descriptor tester = listener.accept();
    cli::sendAll(tester, cli::insulationFrame(5));
    ASSERT_TRUE(program.waitForError("状态:1")) << program.error();
    tester.reset();
    ASSERT_TRUE(program.waitForError("====非连接====")) << program.error();
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0) << program.error();
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

class KestrixConsole : public KestrixProgram {
  protected:
    Surroundings bare() const {
        Surroundings made = setup();
        made.ownSettings = false;
        return made;
    }
    static std::vector<std::string> filesIn(const std::string& folder) {
        std::vector<std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            files.push_back(entry.path());
        return files;
    }
};

// 36 bytes, of which two are the field.
std::string chunkOf(unsigned char high, unsigned char low) {
    std::string chunk(36, '\0');
    chunk[7] = static_cast<char>(high);
    chunk[8] = static_cast<char>(low);
    return chunk;
}

TEST_F(KestrixConsole, ShowsWhatComesTouchesNoFolderAndEndsOnASignal) {
    const cli::Listener listener;
    Program program({"--console", "--connect", listener.uri()}, bare());
    cli::Descriptor tester = listener.accept();
    cli::sendAll(tester, "?");
    ASSERT_TRUE(program.waitForError("info kestrix.link: 1\n")) << program.error();
    cli::sendAll(tester, chunkOf(0x80, 0x7b));
    ASSERT_TRUE(program.waitForError("info kestrix.link: 807b")) << program.error();
    ASSERT_TRUE(program.waitForOutput("转换为十进制：123\n")) << program.output();
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0) << program.error();
    EXPECT_EQ(cli::complaintsIn(program.error()), std::vector<std::string>{});
    EXPECT_EQ(filesIn(program.folder()), std::vector<std::string>{});
}

TEST_F(KestrixConsole, EndsOnASignalWhileItLooks) {
    Program program({"--console", "--connect", "serial:" + path("nothing")}, bare());
    ASSERT_TRUE(program.waitUntilItRests());
    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0) << program.error();
    EXPECT_EQ(filesIn(program.folder()), std::vector<std::string>{});
}

TEST_F(KestrixConsole, GoesWithoutWhatItDoesNotUseAndSaysWhatIsWrong) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong{
        {{"--console", "--documents", path("documents")}, "--console: goes without --documents"},
        {{"--console", "--settings", path("own.ini")}, "--console: goes without --settings"},
        {{"--console", "--tour", path("tour")}, "--tour: goes without --console"},
        {{"--console", "--connect", "morse:key"}, "morse:key"}};
    for (const auto& [arguments, line] : wrong) {
        const cli::Result result = cli::run(arguments, {}, bare());
        EXPECT_EQ(result.status, 2) << line;
        expectOneLine(result.error, line);
        EXPECT_EQ(result.output, "");
    }
    for (const char* name : {"documents", "own.ini", "tour"})
        EXPECT_NE(access(path(name).c_str(), F_OK), 0) << name;
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

// The window would wait for them at every start.
TEST(MailLibraries, AreLoadedByNoWindowThatDoesNotAskForThem) {
    QProcess list;
    list.start(QStringLiteral("ldd"), {QStringLiteral(KESTRIX_BINARY_DIR "/bin/kestrix")});
    ASSERT_TRUE(list.waitForFinished());
    const std::string libraries = list.readAllStandardOutput().toStdString();
    EXPECT_THAT(libraries, ::testing::HasSubstr("libQt6Core"));
    for (const char* library : {"libcurl", "libgmime", "libqt6keychain", "libsecret"})
        EXPECT_THAT(libraries, ::testing::Not(::testing::HasSubstr(library)));
}

}  // namespace
}  // namespace kestrix
