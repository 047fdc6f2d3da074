#include "apps/kestrix-cli/JsonText.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

namespace kestrix::cli {
namespace {

std::string jsonOf(const std::string& text) {
    std::string out;
    appendJsonText(out, text);
    return out;
}

TEST(JsonText, StandsBetweenQuotesBehindWhatIsThere) {
    std::string out = "before";
    appendJsonText(out, "MΩ");
    appendJsonText(out, "");
    EXPECT_EQ(out, "before\"MΩ\"\"\"");
}

TEST(JsonText, AnyTextIsWrittenAsALibraryWritesIt) {
    const std::vector<std::string> pieces{"Ω", "0° :", "plain", "\"", "\\", "\n", "\x01", "\x7f", "😀", " "};
    std::mt19937 random(7);
    for (int n = 0; n < 2000; ++n) {
        std::string text;
        for (auto count = random() % 12; count > 0; --count) text += pieces[random() % pieces.size()];
        ASSERT_EQ(jsonOf(text), nlohmann::json(text).dump());
    }
}

TEST(JsonText, ALongTextOfNothingButEscapesFits) {
    const std::string text(100'000, '\x02');
    EXPECT_EQ(nlohmann::json::parse(jsonOf(text)), text);
}

}  // namespace
}  // namespace kestrix::cli
