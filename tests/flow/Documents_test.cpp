// The documents speak of files, options and tests; here each of them is looked up.
#include <gtest/gtest.h>

#include <QProcess>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "apps/kestrix-cli/Commands.h"

namespace kestrix {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = KESTRIX_SOURCE_DIR;

std::string contentOf(const fs::path& path) {
    const std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<fs::path> documents() {
    std::vector<fs::path> all;
    for (const fs::path& folder : {kRoot, kRoot / "docs"}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".md") all.push_back(entry.path());
        }
    }
    return all;
}

std::vector<std::smatch> matches(const std::string& text, const std::regex& pattern) {
    std::vector<std::smatch> all;
    for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at) all.push_back(*at);
    return all;
}

// The lines that are no code.
std::string proseOf(const std::string& text) {
    std::istringstream lines(text);
    std::string prose;
    bool code = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            code = !code;
        } else if (!code) {
            prose += line + '\n';
        }
    }
    return prose;
}

// A heading's name in a link: "Frame format, in short" is "frame-format-in-short".
std::set<std::string> anchorsOf(const std::string& text) {
    std::set<std::string> anchors;
    std::istringstream lines(proseOf(text));
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("#")) continue;
        std::string anchor;
        for (const char c : line.substr(line.find_first_not_of("# "))) {
            const auto byte = static_cast<unsigned char>(c);
            if (c == ' ' || c == '-') anchor += '-';
            if (std::isalnum(byte) != 0 || c == '_' || byte >= 0x80)
                anchor += static_cast<char>(std::tolower(byte));
        }
        anchors.insert(anchor);
    }
    return anchors;
}

TEST(Documents, EveryRelativeLinkLeadsToAFile) {
    static const std::regex link(R"(\]\(([^)#\s]*)(#[^)\s]*)?\))");
    int links = 0;
    for (const fs::path& document : documents()) {
        const std::string prose = proseOf(contentOf(document));
        for (const std::smatch& match : matches(prose, link)) {
            const std::string target = match[1];
            if (target.find("://") != std::string::npos || target.starts_with("mailto:")) continue;
            ++links;
            const fs::path path = target.empty() ? document : document.parent_path() / target;
            EXPECT_TRUE(fs::exists(path)) << document << " links to " << target;
            if (match[2].matched && fs::is_regular_file(path)) {
                EXPECT_EQ(anchorsOf(contentOf(path)).count(match[2].str().substr(1)), 1U)
                    << document << " links to " << match[0];
            }
        }
    }
    EXPECT_GT(links, 20);
}

// Paths in backticks: `src/link/FrameExtractor.h`, `scripts/bench`.
TEST(Documents, EveryFileNamedIsThere) {
    static const std::regex path(
        "`((?:src|apps|artwork|tests|scripts|docs|cmake|fuzz|bench|packaging)/[A-Za-z0-9_./-]+)`");
    int files = 0;
    for (const fs::path& document : documents()) {
        const std::string text = contentOf(document);
        for (const std::smatch& match : matches(text, path)) {
            ++files;
            EXPECT_TRUE(fs::exists(kRoot / match[1].str())) << document << " names " << match[1];
        }
    }
    EXPECT_GT(files, 20);
}

struct Answer {
    int status = -1;
    std::string output;
};

Answer runProgram(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(KESTRIX_BINARY_DIR "/bin/kestrix-cli"), arguments);
    EXPECT_TRUE(process.waitForFinished()) << arguments.join(' ').toStdString();
    return {process.exitCode(), process.readAllStandardOutput().toStdString()};
}

// The blocks of this kind, each as its lines.
std::vector<std::vector<std::string>> blocksOf(const std::string& text, const std::string& kind) {
    std::vector<std::vector<std::string>> blocks;
    std::istringstream lines(text);
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            inside = line == "```" + kind;
            if (inside) blocks.emplace_back();
        } else if (inside) {
            blocks.back().push_back(line);
        }
    }
    return blocks;
}

struct Help {
    std::set<std::string> flags;   // options without a value
    std::set<std::string> valued;  // options with one
    bool known = false;
};

Help helpOf(const std::string& command) {
    static const std::regex option(R"(^ +(?:-h,)?(--[a-z]+)(?: ([A-Z][^ ]*))?)", std::regex::multiline);
    static std::map<std::string, Help> kept;
    if (const auto found = kept.find(command); found != kept.end()) return found->second;
    QStringList arguments{QStringLiteral("--help")};
    if (!command.empty()) arguments.prepend(QString::fromStdString(command));
    const Answer answer = runProgram(arguments);
    Help help;
    help.known =
        answer.status == 0 && answer.output.find("Usage: kestrix-cli " + command) != std::string::npos;
    for (const std::smatch& match : matches(answer.output, option))
        (match[2].matched ? help.valued : help.flags).insert(match[1]);
    return kept[command] = help;
}

// Looks at one "kestrix-cli ..." of a console block, up to the next command of the line.
void expectKnown(const std::string& call) {
    SCOPED_TRACE(call);
    std::istringstream words(call);
    std::string word;
    words >> word;
    std::string command;
    const Help global = helpOf("");
    ASSERT_TRUE(global.known);
    while (words >> word && word != "|" && word != "&" && word != ">" && word != "<") {
        const Help own = command.empty() ? Help{} : helpOf(command);
        if (word.starts_with("--")) {
            const std::string option = word.substr(0, word.find('='));
            const bool valued = own.valued.count(option) + global.valued.count(option) > 0;
            EXPECT_TRUE(valued || own.flags.count(option) + global.flags.count(option) > 0) << option;
            if (valued && option == word) words >> word;
        } else if (command.empty()) {
            command = word;
            EXPECT_TRUE(helpOf(command).known) << "no command " << command;
        }
    }
}

TEST(Documents, EveryExampleNamesACommandAndOptionsThatExist) {
    static const std::regex call(R"(kestrix-cli( [^|&;]*)?)");
    int calls = 0;
    for (const fs::path& document : documents()) {
        for (const auto& block : blocksOf(contentOf(document), "console")) {
            for (const std::string& line : block) {
                if (!line.starts_with("$ ")) continue;
                for (const std::smatch& match : matches(line, call)) {
                    ++calls;
                    expectKnown(match[0]);
                }
            }
        }
    }
    EXPECT_GT(calls, 12);
}

TEST(Documents, EveryOptionOfEveryCommandIsDescribed) {
    const std::string text = contentOf(kRoot / "docs/command-line.md");
    std::vector<std::string> commands{""};
    for (const cli::Command* command : cli::allCommands()) commands.emplace_back(command->name);
    for (const std::string& command : commands) {
        const Help help = helpOf(command);
        EXPECT_TRUE(help.known) << command;
        for (const auto* options : {&help.flags, &help.valued}) {
            for (const std::string& option : *options) {
                EXPECT_NE(text.find("`" + option), std::string::npos) << command << " " << option;
            }
        }
        if (!command.empty()) {
            EXPECT_NE(text.find("\n## " + command + "\n"), std::string::npos) << command;
        }
    }
}

// The fields of a record stand in the document as they stand in the output.
TEST(Documents, EveryFieldOfARecordIsListedInItsOrder) {
    static const std::regex key("\"(\\w+)\":(\\{[^}]*\\})?");
    const std::string text = contentOf(kRoot / "docs/command-line.md");
    const Answer answer =
        runProgram({QStringLiteral("decode"), QStringLiteral("--frame"), QStringLiteral("7e")});
    std::size_t at = text.find("| Fields |");
    int fields = 0;
    for (const std::smatch& match : matches(answer.output, key)) {
        const std::size_t found = text.find("`" + match[1].str() + "`", at);
        ASSERT_NE(found, std::string::npos) << match[1];
        at = found;
        ++fields;
    }
    EXPECT_EQ(fields, 56);
}

TEST(Documents, TheArchitectureNamesEveryNotificationAndEveryCategoryOfTheLog) {
    const std::string architecture = contentOf(kRoot / "docs/architecture.md");
    const std::regex name(
        R"((?:Q_LOGGING_CATEGORY\(\w+, |string_view \w+ = )\"(kestrix\.\w+|NS\w+|\w*[nN]otification|Accessory\w+)\")");
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / "src")) {
        if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
        for (const std::smatch& found : matches(contentOf(entry.path()), name)) names.insert(found[1]);
    }
    EXPECT_GE(names.size(), 20U);
    for (const std::string& each : names)
        EXPECT_NE(architecture.find("`" + each + "`"), std::string::npos) << each;
}

TEST(Documents, TheNetworkIsTouchedOnlyWhereTheGuaranteeSays) {
    static const std::regex network(
        "#include "
        "<(?:Q(?:AbstractSocket|Dns|Host|LocalS|Network|Ssl|Tcp|Udp)\\w*|QtNetwork.*|sys/socket.h|"
        "net(?!tle/).*|"
        "arpa/.*|curl/.*)>");
    const std::string text = contentOf(kRoot / "docs/guarantees.md");
    int files = 0;
    for (const char* folder : {"src", "apps"}) {
        for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
            if (!entry.is_regular_file() || !std::regex_search(contentOf(entry.path()), network)) continue;
            ++files;
            const std::string name = fs::relative(entry.path(), kRoot).string();
            EXPECT_NE(text.find("`" + name + "`"), std::string::npos) << name << " touches the network";
        }
    }
    EXPECT_EQ(files, 11);
}

// The rows of the table of link faults: each is a test for every kind of source that it names.
std::set<std::string> linkFaults() {
    static const std::regex row(R"re(\{"(\w+)",\s*k\w+)re");
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(kRoot / "tests/flow/faults")) {
        const std::string text = contentOf(entry.path());
        for (const std::smatch& match : matches(text, row)) names.insert("LinkFault." + match[1].str());
    }
    EXPECT_GT(names.size(), 30U);
    return names;
}

std::set<std::string> testsOfTheProject() {
    static const std::regex test(R"(\bTEST(?:_F|_P)?\((\w+),\s*(\w+)\))");
    std::set<std::string> names = linkFaults();
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / "tests")) {
        if (entry.path().extension() != ".cpp") continue;
        const std::string text = contentOf(entry.path());
        for (const std::smatch& match : matches(text, test))
            names.insert(match[1].str() + "." + match[2].str());
    }
    return names;
}

TEST(Documents, EveryTestThatProvesAGuaranteeExists) {
    static const std::regex name("`(\\w+\\.\\w+)`");
    const std::set<std::string> tests = testsOfTheProject();
    const std::string text = contentOf(kRoot / "docs/guarantees.md");
    int named = 0;
    for (const std::smatch& match : matches(text, name)) {
        ++named;
        EXPECT_EQ(tests.count(match[1]), 1U) << "no test " << match[1];
    }
    EXPECT_GT(named, 10);
}

}  // namespace
}  // namespace kestrix
