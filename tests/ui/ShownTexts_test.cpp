// What holds for every source of a screen, that of the model screen too: its texts can be translated, and its
// colours come from one palette.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace kestrix::ui {
namespace {

namespace fs = std::filesystem;

struct SourceLine {
    std::string place;  // file and number
    std::string text;
};

constexpr const char* kFolders[] = {"src", "tests/shell/madeup"};

// Every line of the sources in a folder with one of these endings, without its comment.
std::vector<SourceLine> sourceLinesIn(const char* folder, const std::vector<std::string>& endings) {
    std::vector<SourceLine> lines;
    const fs::path root = KESTRIX_SOURCE_DIR;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        const std::string ending = entry.path().extension().string();
        if (std::find(endings.begin(), endings.end(), ending) == endings.end()) continue;
        std::ifstream file(entry.path());
        std::string line;
        for (int number = 1; std::getline(file, line); ++number) {
            lines.push_back({fs::relative(entry.path(), root).string() + ":" + std::to_string(number),
                             std::regex_replace(line, std::regex(R"(//.*)"), "")});
        }
    }
    return lines;
}

std::vector<SourceLine> sourceLines(const std::vector<std::string>& endings) {
    std::vector<SourceLine> lines;
    for (const char* folder : kFolders) {
        const std::vector<SourceLine> more = sourceLinesIn(folder, endings);
        EXPECT_FALSE(more.empty()) << folder;
        lines.insert(lines.end(), more.begin(), more.end());
    }
    return lines;
}

// Whether a line of QML gives a user a text that no translation can reach.
bool showsBareText(const std::string& line) {
    static const std::regex shown(
        R"re((^|[\s{;])(text|title|hint|placeholder|Accessible\.(name|description)):.*"[^"]*[A-Za-z]{2}[^"]*")re");
    static const std::regex translated(R"re(qsTr\("[^"]*"\)|"Kestrix"|"")re");
    return std::regex_search(std::regex_replace(line, translated, ""), shown);
}

// The same for C++.
bool setsBareText(const std::string& line) {
    static const std::regex shown(
        R"re((setTitle|setText|setAccessibleName|setPlaceholder|notice\.show|alerts\.show)\((QStringLiteral|QLatin1String|QString::fromUtf8|)\(?"[^"]*[A-Za-z]{2})re");
    return std::regex_search(line, shown);
}

bool namesColour(const std::string& line) {
    static const std::regex number(
        R"re("#[0-9a-fA-F]{3,8}"|QColor\(\d|qRgba?\(|Qt\.rgba\(|[cC]olor: "[a-z]+"|\bQt::(color[01]|black|white|(dark|light)?[gG]r[ae]y|(dark)?([rR]ed|[gG]reen|[bB]lue|[cC]yan|[mM]agenta|[yY]ellow)|transparent)\b)re");
    return std::regex_search(line, number);
}

TEST(ShownTexts, TheRulesFindWhatBreaksThem) {
    EXPECT_TRUE(showsBareText("        text: \"Copy this row\""));
    EXPECT_TRUE(showsBareText("    Accessible.name: \"Rows: \" + count"));
    EXPECT_FALSE(showsBareText("    text: qsTr(\"Copy this row\")"));
    EXPECT_FALSE(showsBareText("    name: \"flash.png\""));
    EXPECT_FALSE(showsBareText("    text: button.title === \"\" ? button.name : \"\""));
    EXPECT_TRUE(setsBareText("    btnHelp.setTitle(QStringLiteral(\"Help\"));"));
    EXPECT_TRUE(setsBareText("    services_.notice.show(\"Saved\");"));
    EXPECT_FALSE(setsBareText("    btnHelp.setTitle(tr(\"Help\"));"));
    EXPECT_TRUE(namesColour("    color: \"#10182a\""));
    EXPECT_TRUE(namesColour("    color: \"white\""));
    EXPECT_TRUE(namesColour("    const QColor kLit(39, 121, 205); QColor(39, 121, 205)"));
    EXPECT_TRUE(namesColour("    screenTitle.setTextColor(Qt::white);"));
    EXPECT_TRUE(namesColour("    QColor ground = Qt::darkCyan;"));
    EXPECT_TRUE(namesColour("    QColor ground = Qt::transparent;"));
    EXPECT_FALSE(namesColour("    color: Colors.ink"));
    EXPECT_FALSE(namesColour("    screenTitle.setTextColor(Palette::white)"));
    EXPECT_FALSE(namesColour("    screenTitle.setAlignment(Qt::AlignHCenter);"));
}

TEST(ShownTexts, EveryTextOfAScreenCanBeTranslated) {
    for (const SourceLine& line : sourceLines({".qml"}))
        EXPECT_FALSE(showsBareText(line.text)) << line.place << " shows a text without qsTr(): " << line.text;
    for (const SourceLine& line : sourceLines({".cpp", ".h"}))
        EXPECT_FALSE(setsBareText(line.text)) << line.place << " shows a text without tr(): " << line.text;
}

TEST(ShownTexts, EveryColourComesFromThePalette) {
    for (const SourceLine& line : sourceLines({".qml", ".cpp", ".h"})) {
        if (line.place.find("src/ui/Palette.h") == 0) continue;
        EXPECT_FALSE(namesColour(line.text))
            << line.place << " names a colour that the palette does not: " << line.text;
    }
}

}  // namespace
}  // namespace kestrix::ui
