// Whatever script a value is in: the figures beside it are there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QString>

#include <map>

#include "history/PdfReport.h"
#include "tests/history/Exported.h"
#include "tests/history/ReportReader.h"
#include "tests/support/LogExpectations.h"

namespace kestrix::history {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Set before the program asks for its first font.
[[maybe_unused]] const bool kTheseFontsOnly =
    qputenv("FONTCONFIG_FILE", KESTRIX_SOURCE_DIR "/tests/history/fonts.conf");

std::string resultLine(const std::string& result) {
    const std::vector<storage::MeasureData> all{measureWith(result)};
    return lineAt(wordsOf(written(kPdfFormat, exportOf(all))), 86);
}

// Those of a script that no font has would take what follows them along.
TEST(ReportScripts, FiguresBehindAScriptThatNoFontHasAreKept) {
    for (const auto& [text, first] :
         std::map<std::string, std::string>{{"अजय", "U+0905 (अ), U+091C (ज), U+092F (य)"},
                                            {"हिन्दी", "U+0926 (द), U+0928 (न)"},
                                            {"বাংলা", "U+0982"},
                                            {"தமிழ்", "U+0BA4"},
                                            {"తెలుగు", "U+0C17"},
                                            {"සිංහල", "U+0D82"},
                                            {"ខ្មែរ", "U+1781"},
                                            {"ܣܘܪܝܝܐ", "U+0710"},
                                            {"\u070F", "U+070F"}}) {
        const std::vector<storage::MeasureData> all{measureWith(text),
                                                    measureWith("186.4MΩ " + text + " 528V")};
        ExportedRecord record = exportOf(all);
        record.record->operators = text;
        testing::expectWarning("no installed font has " + first);
        const std::vector<Word> words = wordsOf(written(kPdfFormat, record));

        std::string squares;
        for (qsizetype i = 0; i < QString::fromStdString(text).size(); ++i) squares += "□";
        EXPECT_EQ(lineAt(words, 46),
                  "House 7 Volt & Sons 7 Main Street " + squares + " 2024-06-03 09:08:07 SN 1 3");
        EXPECT_EQ(lineAt(words, 86), "17 S_1 Low Ohm 200mA " + squares + " 2024-06-03 09:08:07");
        EXPECT_EQ(lineAt(words, 106),
                  "17 S_1 Low Ohm 200mA 186.4MΩ " + squares + " 528V 2024-06-03 09:08:07");
    }
}

TEST(ReportScripts, MarksAndJoinersOfScriptsThatAreThereAreDrawn) {
    for (const std::string text : {"مَرْحَبًا", "شما\u200Cرا", "שָׁלוֹם", "x\u0304 e\u0323\u0301", "Ǻ\u034F"}) {
        const std::string line = resultLine(text);
        EXPECT_TRUE(line.starts_with("17 S_1 Low Ohm 200mA ")) << line;
        EXPECT_TRUE(line.ends_with(" 2024-06-03 09:08:07")) << line;
        EXPECT_THAT(line, Not(HasSubstr("□")));
    }
}

// As docs/export.md says: what is drawn and what can be searched are two things there.
TEST(ReportScripts, ACharacterBeyondTheFirstPlaneIsDrawnButNotFound) {
    const std::string line = resultLine("A😀B 12");
    EXPECT_THAT(line, HasSubstr(" A"));
    EXPECT_THAT(line, HasSubstr("B 12 2024-06-03 09:08:07"));
    EXPECT_THAT(line, Not(HasSubstr("😀")));
    EXPECT_THAT(line, Not(HasSubstr("□")));
}

TEST(ReportScripts, ArabicComesBackInItsShapesAndNormalizedAsItsLetters) {
    const std::vector<storage::MeasureData> all{measureWith("مرحبا")};
    const std::string text = textOf(written(kPdfFormat, exportOf(all)));
    EXPECT_THAT(text, HasSubstr("ﻣﺮﺣﺒﺎ"));
    EXPECT_THAT(QString::fromStdString(text).normalized(QString::NormalizationForm_KC).toStdString(),
                HasSubstr("مرحبا"));
}

}  // namespace
}  // namespace kestrix::history
