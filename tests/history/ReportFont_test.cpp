#include "history/ReportFont.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QImage>

#include "tests/support/LogExpectations.h"

namespace kestrix::history {
namespace {

class ReportFonts : public ::testing::Test {
  protected:
    QImage device_{10, 10, QImage::Format_Grayscale8};
    ReportFont font_{device_, 10};
};

TEST_F(ReportFonts, ItIsTheSystemFontInTheSizeOfThePage) {
    EXPECT_EQ(QFontInfo(font_.ofSize(7).font).family(), QStringLiteral("Liberation Sans"));
    EXPECT_EQ(font_.ofSize(7).font.pixelSize(), 70);
    EXPECT_EQ(font_.ofSize(9).font.pixelSize(), 90);
    EXPECT_NEAR(font_.ofSize(9).ascent, 0.905 * 90, 1);
}

// The system's own order may put another font first, which has few Chinese characters.
TEST_F(ReportFonts, TheFontWithChineseIsAskedBeforeTheSystemsOwnOrder) {
    EXPECT_EQ(font_.ofSize(7).font.families().value(1), QStringLiteral("Droid Sans Fallback"));
}

TEST_F(ReportFonts, ATextIsDrawnAsItIs) {
    for (const char* text : {"", "plain ~", "186.4MΩ °µ", "中文", "é", "a \uFFFD b"})
        EXPECT_EQ(font_.drawable(text), QString::fromUtf8(text));
}

TEST_F(ReportFonts, WhatMovesThePrintersHeadIsABlank) {
    EXPECT_EQ(font_.drawable("a\nb\tc\rd\x1b"
                             "e\x7f"
                             "f\u0085g\u2028h\u2029i"),
              QStringLiteral("a b c d e f g h i"));
}

// A field must not turn the figures of those behind it round.
TEST_F(ReportFonts, WhatTurnsCharactersRoundIsLeftOut) {
    EXPECT_EQ(font_.drawable("a\u202E"
                             "186.4\u202C\u2066"
                             "b\u2069\u202D"
                             "c"),
              QStringLiteral("a186.4bc"));
}

TEST_F(ReportFonts, WhatHasNoPictureIsNotMissing) {
    font_.drawable("e\u0301\u200D\u200E\uFE0F\u00AD\u2003\u3000\U000E0101");
    font_.reportMissing();
}

TEST_F(ReportFonts, WhatNoFontHasIsAWhiteSquareAndNamedInOrder) {
    EXPECT_EQ(font_.drawable("\U0010F002Ω\U0010F001\U0010F002"), QStringLiteral("□Ω□□"));
    testing::expectWarning("no installed font has U+10F001 (\U0010F001), U+10F002 (\U0010F002)");
    font_.reportMissing();
}

}  // namespace
}  // namespace kestrix::history
