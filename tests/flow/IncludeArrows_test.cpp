// The folders under src/ may include each other along these arrows only; a lower floor never knows a higher
// one.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace kestrix {
namespace {

namespace fs = std::filesystem;
using Folders = std::set<std::string>;

const std::map<std::string, Folders>& arrows() {
    static const std::map<std::string, Folders> allowed{
        {"protocol", {}},
        {"simulator", {}},
        {"display", {"protocol"}},
        {"platform", {}},
        {"ui", {"platform"}},
        {"link", {"protocol", "platform", "ui"}},
        {"storage", {"platform", "ui"}},
        {"live", {"display", "link", "storage", "protocol", "platform", "ui"}},
        {"history", {"storage", "platform", "ui"}},
        {"shell",
         {"protocol", "display", "simulator", "platform", "ui", "link", "storage", "live", "history",
          "artwork"}},
    };
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
        ASSERT_EQ(arrows().count(folder), 1U) << folder << " is no folder of the house";
        std::ifstream text(entry.path());
        for (const std::string& line : wrongIncludes(folder, text))
            ADD_FAILURE() << entry.path() << ": " << line;
        ++files;
    }
    EXPECT_GT(files, 40);
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
