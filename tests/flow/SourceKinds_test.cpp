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
        {"packaging/completions/kestrix-cli.bash", "_kestrix_cli_words '([a-z]+):"},
        {"packaging/completions/_kestrix-cli", "schemes=\\(([a-z]+):"},
        {"packaging/completions/kestrix-cli.fish", "printf '%s\\\\n' ([a-z]+):"},
    };
    for (const ToldIn& page : pages) {
        const std::string text = pageText(kProject / page.path);
        std::set<std::string> told = schemesIn(text, page.schemes);
        // Where they stand in one line, the first was found: the rest of that line follows.
        if (told.size() == 1 && std::string(page.path).find("completions") != std::string::npos) {
            const std::string first = *told.begin() + ":";
            const std::size_t at = text.find(first + " ");
            ASSERT_NE(at, std::string::npos) << page.path;
            const std::string line = text.substr(at, text.find_first_of("')\n(", at) - at);
            told = schemesIn(line, "([a-z]+):");
        }
        EXPECT_EQ(told, kinds) << page.path;
    }
}

}  // namespace
}  // namespace kestrix
