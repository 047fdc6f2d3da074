// The folders under src/ may include each other along the arrows of docs/architecture.md only; a lower floor
// never knows a higher one.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace kestrix {
namespace {

namespace fs = std::filesystem;
using Folders = std::set<std::string>;

Folders namesIn(const std::string& list) {
    static const std::regex name("[a-z]+");
    return Folders(std::sregex_token_iterator(list.begin(), list.end(), name), {});
}

// The arrows of the page's block, "live ─▶ link, ui", several to a line, by the folder that they begin at:
// what stands behind them, word by word.
std::map<std::string, Folders> arrowsIn(std::istream& page) {
    static const std::regex gap(" {2,}|; ");
    static const std::string arrow = " ─▶ ";
    std::map<std::string, Folders> arrows;
    std::string line;
    while (std::getline(page, line) && line != "## Folders and arrows") continue;
    while (std::getline(page, line) && line != "```text") continue;
    while (std::getline(page, line) && line != "```") {
        for (std::sregex_token_iterator at(line.begin(), line.end(), gap, -1), end; at != end; ++at) {
            const std::string one = *at;
            const std::size_t middle = one.find(arrow);
            if (middle == std::string::npos) continue;
            for (const std::string& from : namesIn(one.substr(0, middle)))
                arrows[from] = namesIn(one.substr(middle + arrow.size()));
        }
    }
    return arrows;
}

const std::map<std::string, Folders>& arrows() {
    static const std::map<std::string, Folders> allowed = [] {
        std::ifstream page(fs::path(KESTRIX_SOURCE_DIR) / "docs/architecture.md");
        std::map<std::string, Folders> arrows = arrowsIn(page);
        Folders& ofShell = arrows["shell"];
        if (ofShell != Folders{"everything"}) return arrows;
        ofShell = {"artwork"};
        for (const auto& [folder, targets] : arrows) {
            if (fs::is_directory(fs::path(KESTRIX_SOURCE_DIR) / "src" / folder)) ofShell.insert(folder);
        }
        return arrows;
    }();
    return allowed;
}

// The lines of `text`, a file of src/<folder>, that include along no arrow.
std::vector<std::string> wrongIncludes(const std::string& folder, std::istream& text) {
    static const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::vector<std::string> wrong;
    for (std::string line; std::getline(text, line);) {
        std::smatch match;
        if (!std::regex_search(line, match, include)) continue;
        const std::string path = match[2];
        const std::string target = path.substr(0, path.find('/'));
        const bool system = match[1] == "<";
        const bool pure = folder == "protocol" || folder == "simulator" || folder == "display";
        if (system) {
            // Pure C++: the standard headers have neither a folder nor an ending nor a capital letter.
            if (pure && path.find_first_of("/.ABCDEFGHIJKLMNOPQRSTUVWXYZ") != std::string::npos)
                wrong.push_back(line);
        } else if (target != folder && arrows().at(folder).count(target) == 0) {
            wrong.push_back(line);
        }
    }
    return wrong;
}

std::vector<std::string> wrongIncludesIn(const std::string& folder, const std::string& text) {
    std::istringstream stream(text);
    return wrongIncludes(folder, stream);
}

TEST(IncludeArrows, EveryFolderIncludesAlongItsArrowsOnly) {
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(KESTRIX_SOURCE_DIR) / "src")) {
        const std::string extension = entry.path().extension().string();
        if (extension != ".h" && extension != ".cpp") continue;
        const std::string folder =
            fs::relative(entry.path(), fs::path(KESTRIX_SOURCE_DIR) / "src").begin()->string();
        ASSERT_EQ(arrows().count(folder), 1U) << folder << " has no arrow in docs/architecture.md";
        std::ifstream text(entry.path());
        for (const std::string& line : wrongIncludes(folder, text))
            ADD_FAILURE() << entry.path() << ": " << line;
        ++files;
    }
    EXPECT_GT(files, 40);
}

TEST(IncludeArrows, TheyAreThoseOfThePage) {
    EXPECT_EQ(arrows().at("display"), Folders{"protocol"});
    EXPECT_EQ(arrows().at("ui"), Folders{"platform"});
    EXPECT_EQ(arrows().at("link"), (Folders{"platform", "protocol", "ui"}));
    for (const char* folder : {"live", "link", "storage", "simulator", "artwork"})
        EXPECT_EQ(arrows().at("shell").count(folder), 1U) << folder;
    EXPECT_EQ(arrows().at("shell").count("apps"), 0U);
    for (const auto& [folder, targets] : arrows())
        EXPECT_TRUE(folder == "nobody" || targets.count("shell") == 0 || folder == "shell") << folder;
}

TEST(IncludeArrows, AWrongArrowIsFound) {
    EXPECT_EQ(wrongIncludesIn("protocol", "#include \"platform/Log.h\"\n").size(), 1U);
    EXPECT_EQ(wrongIncludesIn("platform", "#include \"protocol/MeterReading.h\"\n").size(), 1U);
    EXPECT_EQ(wrongIncludesIn("simulator", "  # include \"protocol/HexText.h\"\n").size(), 1U);
    EXPECT_EQ(wrongIncludesIn("display", "#include \"platform/Log.h\"\n#include <QString>\n").size(), 2U);
    EXPECT_EQ(wrongIncludesIn("link", "#include \"live/MainViewController.h\"\n").size(), 1U);
    EXPECT_EQ(wrongIncludesIn("link", "#include \"apps/common/SimulatorSource.h\"\n").size(), 1U);
    EXPECT_EQ(
        wrongIncludesIn("protocol", "#include <QString>\n#include <unistd.h>\n#include <string>\n").size(),
        2U);
}

TEST(IncludeArrows, ARightArrowIsNot) {
    EXPECT_TRUE(
        wrongIncludesIn(
            "link",
            "#include \"link/FrameExtractor.h\"\n#include \"protocol/HexText.h\"\n#include <QString>\n")
            .empty());
}

}  // namespace
}  // namespace kestrix
