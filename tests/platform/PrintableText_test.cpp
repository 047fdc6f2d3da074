#include "platform/PrintableText.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrix::platform {
namespace {

TEST(PrintableText, WhatIsPrintableStays) {
    EXPECT_EQ(printableText(""), "");
    EXPECT_EQ(printableText("Müller's Ω-Tester 7, 测试"), "Müller's Ω-Tester 7, 测试");
}

TEST(PrintableText, WhatDrivesATerminalDoesNot) {
    EXPECT_EQ(printableText("a\x1b[2Jb"), "a\uFFFD[2Jb");
    EXPECT_EQ(printableText("two\r\nlines"), "two\uFFFD\uFFFDlines");
    EXPECT_EQ(printableText("c1 \u009B31m"), "c1 \uFFFD31m");
    EXPECT_EQ(printableText("turned \u202E round"), "turned \uFFFD round");
    EXPECT_EQ(printableText("line\u2028end"), "line\uFFFDend");
    EXPECT_EQ(printableText("no text \xFF"), "no text \uFFFD");
}

TEST(PrintableText, ALongTextIsCut) {
    EXPECT_EQ(printableText(std::string(10'000, 'x')), std::string(500, 'x'));
}

}  // namespace
}  // namespace kestrix::platform
