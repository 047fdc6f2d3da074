// Every source file is built: one that no CMakeLists names looks like a test that passes.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

namespace kestrix {
namespace {

namespace fs = std::filesystem;

std::string listedIn(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

bool isNamedIn(const fs::path& folder, const fs::path& source) {
    const std::regex name("(^|[\\s/])" +
                          std::regex_replace(source.filename().string(), std::regex("\\."), "\\.") +
                          "([\\s)]|$)");
    return std::regex_search(listedIn(folder / "CMakeLists.txt"), name);
}

// In the CMakeLists of its folder, or of one above it; a folder of screens also names its tests.
bool isNamed(const fs::path& source, const fs::path& top) {
    for (fs::path folder = source.parent_path(); folder != top.parent_path(); folder = folder.parent_path()) {
        if (isNamedIn(folder, source)) return true;
    }
    const fs::path folder = fs::relative(source.parent_path(), top / "tests");
    return isNamedIn(top / "src" / folder, source);
}

TEST(SourceFiles, EachIsNamedByACMakeLists) {
    const fs::path top = KESTRIX_SOURCE_DIR;
    int sources = 0;
    for (const char* folder : {"src", "apps", "artwork", "tests", "bench", "fuzz"}) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(top / folder)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".cpp" && extension != ".qml") continue;
            ++sources;
            EXPECT_TRUE(isNamed(entry.path(), top)) << fs::relative(entry.path(), top).string()
                                                    << " stands in no CMakeLists.txt, so nothing builds it";
        }
    }
    EXPECT_GT(sources, 200);
}

}  // namespace
}  // namespace kestrix
