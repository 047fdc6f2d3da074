#include "history/PatternPass.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrix::history {
namespace {

std::string passed(const std::string& pattern) {
    std::string text = "before ";
    appendPatternPass(text, pattern, "STAMP");
    EXPECT_EQ(text.substr(0, 7), "before ");
    return text.substr(7);
}

TEST(PatternPass, TheTimeStampStandsForEachOfItsPlaces) {
    EXPECT_EQ(passed("%@"), "STAMP");
    EXPECT_EQ(passed("a%@b%@%@c"), "aSTAMPbSTAMPSTAMPc");
}

TEST(PatternPass, TwoPercentSignsAreOne) {
    EXPECT_EQ(passed("%%"), "%");
    EXPECT_EQ(passed("5%%"), "5%");
    EXPECT_EQ(passed("%%@"), "%@") << "what is written is not read again";
    EXPECT_EQ(passed("%%%@"), "%STAMP");
    EXPECT_EQ(passed("%%%%d"), "%%d");
}

TEST(PatternPass, ATextWithoutPercentSignIsUnchanged) {
    for (const char* text : {"", "a", "Ω ° µ 中文 😀", "\n\r\t\"'\\", "\xff\xc3"})
        EXPECT_EQ(passed(text), text);
    EXPECT_EQ(passed(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(PatternPass, EveryConversionIsDropped) {
    for (const char conversion : std::string("dDiuUxXoOfFeEgGaAcCsSpn"))
        EXPECT_EQ(passed(std::string("[%") + conversion + "]"), "[]") << conversion;
    EXPECT_EQ(passed("%s%s%s"), "");
    EXPECT_EQ(passed("%n"), "");
}

TEST(PatternPass, WhatBelongsToADirectiveGoesWithIt) {
    for (const char* directive : {"%5d",   "%-5d",      "%+d",  "% d",   "%#x",     "%0d",
                                  "%'d",   "%-+# 0'5d", "%.3f", "%.f",   "%5.3f",   "%*d",
                                  "%*.*f", "%.*f",      "%1$d", "%12$d", "%1$*2$d", "%1$*2$.*3$d",
                                  "%hhd",  "%hd",       "%ld",  "%lld",  "%qd",     "%Lf",
                                  "%zu",   "%td",       "%jd",  "%ls",   "%08.3Lf", "%99999999999999999999d"})
        EXPECT_EQ(passed(std::string("[") + directive + "]"), "[]") << directive;
}

TEST(PatternPass, APlaceOfTheTimeStampThatAsksForMoreIsADirectiveAsAnyOther) {
    for (const char* directive : {"%5@", "%1$@", "%-@", "% @", "%l@", "%.3@", "%*@"})
        EXPECT_EQ(passed(std::string("[") + directive + "]"), "[]") << directive;
}

TEST(PatternPass, APercentSignThatBeginsNoWholeDirectiveStays) {
    for (const char* text :
         {"%",    "5%",  "%5",    "%5.", "%-",  "% ",   "%l",   "%1$",  "%*",     "%y",  "%Q", "%!",
          "%&5d", "%\n", "%5\nd", "%Ω",  "%ll", "%hhh", "%..d", "%5 d", "%1$1$d", "%$d", "%k"})
        EXPECT_EQ(passed(text), text);
}

TEST(PatternPass, BehindAPercentSignThatStaysTheNextOneCounts) {
    EXPECT_EQ(passed("%5%@"), "%5STAMP");
    EXPECT_EQ(passed("% %d%"), "% %");
    EXPECT_EQ(passed("%5%%@"), "%5%@");
}

TEST(PatternPass, AFlagCountsOnceSoThatASeparatorBeginsNoDirective) {
    EXPECT_EQ(passed("99%     S_1"), "99%     S_1");
    EXPECT_EQ(passed("99%     due"), "99%     due");
    EXPECT_EQ(passed("%--d"), "%--d");
    EXPECT_EQ(passed("%  d"), "%  d");
    EXPECT_EQ(passed("99% due"), "99ue") << "a single blank is a flag";
}

}  // namespace
}  // namespace kestrix::history
