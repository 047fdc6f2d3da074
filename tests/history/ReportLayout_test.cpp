#include "history/ReportLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrix::history {
namespace {

using ::testing::ElementsAre;

ReportLines report(const std::string& content, std::vector<std::string> rows = {}) {
    return {"record title", content, "measure title", std::move(rows)};
}

std::string repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

std::string letters(std::size_t count) {
    return std::string(count, 'x');
}

TEST(ReportLayout, ARecordWithoutMeasurementsIsTwoTitlesTheRecordLineAndThreeRules) {
    const ReportPage page = layOutReport(report("content"));
    EXPECT_EQ(page.width, 612);
    EXPECT_EQ(page.height, 792);
    EXPECT_EQ(page.border, (ReportRectangle{20, 20, 572, 752}));
    EXPECT_EQ(page.rulesLeft, 20);
    EXPECT_EQ(page.rulesRight, 592);
    EXPECT_THAT(page.rules, ElementsAre(41, 61, 81));
    EXPECT_THAT(page.texts,
                ElementsAre(ReportText{30, 26, 9, "record title"}, ReportText{30, 46, 7, "content"},
                            ReportText{30, 66, 9, "measure title"}));
}

TEST(ReportLayout, WithoutARecordOnlyItsTextsAreMissing) {
    const ReportPage page = layOutReport({"", "", "measure title", {"row"}});
    EXPECT_THAT(page.rules, ElementsAre(41, 61, 81, 101));
    EXPECT_THAT(page.texts,
                ElementsAre(ReportText{30, 66, 9, "measure title"}, ReportText{30, 86, 7, "row"}));
}

TEST(ReportLayout, RowsStand20ApartAndEachHasItsRule) {
    const ReportPage page = layOutReport(report("content", {"one", "two", "three"}));
    EXPECT_THAT(page.rules, ElementsAre(41, 61, 81, 101, 121, 141));
    EXPECT_EQ(page.texts.at(3), (ReportText{30, 86, 7, "one"}));
    EXPECT_EQ(page.texts.at(4), (ReportText{30, 106, 7, "two"}));
    EXPECT_EQ(page.texts.at(5), (ReportText{30, 126, 7, "three"}));
}

TEST(ReportLayout, NineteenMeasurementsAreALetter) {
    const ReportPage page = layOutReport(report("content", std::vector<std::string>(19, "row")));
    EXPECT_EQ(page.height, 792);
    EXPECT_EQ(page.border.height, 752);
}

TEST(ReportLayout, TwentyShortRowsArePage520High) {
    const ReportPage page = layOutReport(report("content", std::vector<std::string>(20, "row")));
    EXPECT_EQ(page.height, 520);
    EXPECT_EQ(page.border, (ReportRectangle{20, 20, 572, 480}));
    EXPECT_EQ(page.rules.back(), 481);
}

TEST(ReportLayout, NineteenRowsThatWrapAreALetterAsWell) {
    EXPECT_EQ(layOutReport(report("content", std::vector<std::string>(19, letters(300)))).height, 792);
}

TEST(ReportLayout, TheHeightCounts30From171CharactersOn) {
    EXPECT_EQ(getPDFHeight({}), 120);
    EXPECT_EQ(getPDFHeight({"row"}), 140);
    EXPECT_EQ(getPDFHeight({letters(170)}), 140);
    EXPECT_EQ(getPDFHeight({letters(171)}), 150);
    EXPECT_EQ(getPDFHeight({letters(171), "row", letters(1000)}), 200);
    EXPECT_EQ(getPDFHeight({repeated("中", 170)}), 140) << "characters, not bytes";
    EXPECT_EQ(getPDFHeight({repeated("😀", 171)}), 150);
}

TEST(ReportLayout, ARowOf166CharactersIsOneLineAnd167AreTwo) {
    const ReportPage one = layOutReport(report("content", {letters(166)}));
    EXPECT_EQ(one.texts.at(3), (ReportText{30, 86, 7, letters(166)}));
    EXPECT_EQ(one.rules.back(), 101);

    const ReportPage two = layOutReport(report("content", {letters(166) + "y", "next"}));
    EXPECT_EQ(two.texts.at(3), (ReportText{30, 86, 7, letters(166)}));
    EXPECT_EQ(two.texts.at(4), (ReportText{30, 96, 7, "y"}));
    EXPECT_EQ(two.texts.at(5), (ReportText{30, 116, 7, "next"}));
    EXPECT_THAT(two.rules, ElementsAre(41, 61, 81, 111, 131));
}

TEST(ReportLayout, ARowOf168CharactersIsTwoLinesThoughThePageCountsOne) {
    const std::vector<std::string> rows(20, letters(168));
    const ReportPage page = layOutReport(report("content", rows));
    EXPECT_EQ(page.height, 520);
    EXPECT_EQ(page.texts.size(), 3U + 40);
    // The last ones run past the border, whose lower edge is at 500, and past the page.
    EXPECT_EQ(page.rules.back(), 81 + 20 * 30);
}

TEST(ReportLayout, ARowWrapsOnceHoweverLongItIs) {
    const ReportPage page = layOutReport(report("content", {letters(166) + letters(1000), "next"}));
    EXPECT_EQ(page.texts.at(4), (ReportText{30, 96, 7, letters(1000)}));
    EXPECT_EQ(page.texts.at(5).y, 116);
}

TEST(ReportLayout, ARowIsNotSplitInsideACharacter) {
    const ReportPage page = layOutReport(report("content", {repeated("Ω", 160) + repeated("😀", 8)}));
    EXPECT_EQ(page.texts.at(3).text, repeated("Ω", 160) + repeated("😀", 6));
    EXPECT_EQ(page.texts.at(4).text, repeated("😀", 2));
}

TEST(ReportLayout, ARecordLineIsSplitBeforeTheCharacterThatMakesIt166) {
    EXPECT_EQ(layOutReport(report(letters(165))).texts.at(1), (ReportText{30, 46, 7, letters(165)}));

    const ReportPage page = layOutReport(report(letters(165) + "yz", {"row"}));
    EXPECT_EQ(page.texts.at(1), (ReportText{30, 46, 7, letters(165)}));
    EXPECT_EQ(page.texts.at(2), (ReportText{30, 56, 7, "yz"}));
    EXPECT_EQ(page.texts.at(3), (ReportText{30, 76, 9, "measure title"}));
    EXPECT_EQ(page.texts.at(4), (ReportText{30, 96, 7, "row"}));
    EXPECT_THAT(page.rules, ElementsAre(41, 71, 91, 111));

    EXPECT_EQ(layOutReport(report(letters(165) + "y")).texts.at(2), (ReportText{30, 56, 7, "y"}));
}

TEST(ReportLayout, ACharacterOfThreeBytesCountsTwoAndAnyOtherOne) {
    EXPECT_EQ(layOutReport(report(repeated("中", 90))).texts.at(1).text, repeated("中", 82));
    EXPECT_EQ(layOutReport(report(repeated("Ω", 170))).texts.at(1).text, repeated("Ω", 165));
    EXPECT_EQ(layOutReport(report(repeated("😀", 170))).texts.at(1).text, repeated("😀", 165));
    EXPECT_EQ(layOutReport(report(letters(10) + repeated("中", 90))).texts.at(1).text,
              letters(10) + repeated("中", 77));
}

TEST(ReportLayout, ARecordLineThatStepsOver166IsNotSplit) {
    const std::string line = letters(1) + repeated("中", 200);
    const ReportPage page = layOutReport(report(line));
    EXPECT_EQ(page.texts.at(1), (ReportText{30, 46, 7, line}));
    EXPECT_EQ(page.rules.at(1), 61);
}

TEST(ReportLayout, BytesThatAreNoUtf8AreACharacterEach) {
    EXPECT_EQ(getPDFHeight({repeated("\xff", 170)}), 140);
    EXPECT_EQ(getPDFHeight({repeated("\xff", 171)}), 150);
    EXPECT_EQ(getPDFHeight({letters(169) + "\xe4\xb8"}), 150) << "a character that is cut off";
}

}  // namespace
}  // namespace kestrix::history
