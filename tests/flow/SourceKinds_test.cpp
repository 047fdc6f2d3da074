// The kinds of sources stand in one table of the program. Whatever tells the user of them tells of all, and
// of no others.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

#include "platform/AccessorySources.h"

namespace kestrix {
namespace {

namespace fs = std::filesystem;
const fs::path kProject = KESTRIX_SOURCE_DIR;

std::string pageText(const fs::path& path) {
    std::ifstream file(path);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> schemesIn(const std::string& text, const char* expression) {
    const std::regex regex(expression);
    std::set<std::string> all;
    for (std::sregex_iterator hit(text.begin(), text.end(), regex), none; hit != none; ++hit)
        all.insert((*hit)[1]);
    return all;
}

struct ToldIn {
    const char* path;
    const char* schemes;  // where one stands in it
};

TEST(SourceKinds, EveryPageTellsOfExactlyTheKindsThereAre) {
    std::set<std::string> kinds;
    for (const platform::SourceKind& kind : platform::sourceKinds()) kinds.emplace(kind.scheme);
    const ToldIn pages[] = {
        {"docs/command-line.md", "\n\\| `([a-z]+):"},
        {"packaging/kestrix-cli.1", "\n\\.It Li ([a-z]+):"},
        {"packaging/completions/kinds", "([a-z]+):"},
    };
    for (const ToldIn& page : pages) {
        const std::string text = pageText(kProject / page.path);
        const std::set<std::string> told = schemesIn(text, page.schemes);
        EXPECT_EQ(told, kinds) << page.path;
    }
}

// What is installed: none has a list of its own.
TEST(SourceKinds, EveryCompletionOffersTheKindsOfOneList) {
    std::string list = pageText(kProject / "packaging/completions/kinds");
    list.pop_back();
    int files = 0;
    for (const auto& file :
         std::filesystem::directory_iterator(KESTRIX_BINARY_DIR "/packaging/completions")) {
        const std::string text = pageText(file.path());
        const std::size_t at = text.find(list);
        EXPECT_NE(at, std::string::npos) << file.path();
        EXPECT_EQ(text.find("bluetooth:", at + list.size()), std::string::npos) << file.path();
        EXPECT_EQ(text.rfind("bluetooth:", at - 1), std::string::npos) << file.path();
        ++files;
    }
    EXPECT_EQ(files, 6);
    for (const auto& file : std::filesystem::directory_iterator(kProject / "packaging/completions")) {
        const std::string text = pageText(file.path());
        if (file.path().filename() != "kinds")
            EXPECT_NE(text.find("@KINDS@"), std::string::npos) << file.path();
    }
}

}  // namespace
}  // namespace kestrix
