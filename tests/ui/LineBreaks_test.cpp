#include "ui/LineBreaks.h"

#include <gtest/gtest.h>

namespace kestrix::ui {
namespace {

// A place to break is written | here, and one where no line may break ^.
QString marked(const QString& text) {
    return withLineBreaks(text).replace(QChar(0x200B), u'|').replace(QChar(0x2060), u'^');
}

TEST(LineBreaks, ALineMayBreakBehindEveryComma) {
    EXPECT_EQ(marked(QStringLiteral("IΔn=30mA,Type Of RCD=AC-G,Mode=x1")),
              QStringLiteral("IΔn=30mA,|Type Of RCD=AC-G,|Mode=x1"));
    EXPECT_EQ(marked(QStringLiteral("8.8ms,,L-PE=1V;N")), QStringLiteral("8.8ms,|,|L-^PE=1V;|N"));
}

TEST(LineBreaks, WhereALineMayBreakAnywayNothingIsAdded) {
    EXPECT_EQ(marked(QStringLiteral("one, two,")), QStringLiteral("one, two,"));
    EXPECT_EQ(marked(QStringLiteral("plain")), QStringLiteral("plain"));
    EXPECT_EQ(marked(QStringLiteral(",")), QStringLiteral(","));
    EXPECT_TRUE(withLineBreaks({}).isEmpty());
}

TEST(LineBreaks, NoLineEndsBehindTheHyphenOfAWiresName) {
    EXPECT_EQ(marked(QStringLiteral("L-PE=230V,N-PE=0V,L-N=230V")),
              QStringLiteral("L-^PE=230V,|N-^PE=0V,|L-^N=230V"));
    EXPECT_EQ(marked(QStringLiteral("AC-G no-trip 4-5 -1 x1-2")), QStringLiteral("AC-G no-trip 4-5 -1 x1-2"));
}

TEST(LineBreaks, NoLineEndsBehindTheColonOfALimitsName) {
    EXPECT_EQ(marked(QStringLiteral("UF:0.4V,UL:50V")), QStringLiteral("UF:^0.4V,|UL:^50V"));
    EXPECT_EQ(marked(QStringLiteral("samples:  3, N-")), QStringLiteral("samples:  3, N-"));
    EXPECT_EQ(marked(QStringLiteral("2026-01-15 10:00:00")), QStringLiteral("2026-01-15 10:00:00"));
}

TEST(LineBreaks, TheTextItselfStays) {
    const QString text = QStringLiteral("a,b,c;d,N-PE=0V");
    EXPECT_EQ(withLineBreaks(text).remove(QChar(0x200B)).remove(QChar(0x2060)), text);
}

}  // namespace
}  // namespace kestrix::ui
