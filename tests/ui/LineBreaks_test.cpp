#include "ui/LineBreaks.h"

#include <gtest/gtest.h>

namespace kestrix::ui {
namespace {

// A place to break is written | here.
QString marked(const QString& text) {
    return withLineBreaks(text).replace(QChar(0x200B), u'|');
}

TEST(LineBreaks, ALineMayBreakBehindEveryComma) {
    EXPECT_EQ(marked(QStringLiteral("IΔn=30mA,Type Of RCD=AC-G,Mode=x1")),
              QStringLiteral("IΔn=30mA,|Type Of RCD=AC-G,|Mode=x1"));
    EXPECT_EQ(marked(QStringLiteral("8.8ms,,L-PE=1V;N")), QStringLiteral("8.8ms,|,|L-PE=1V;|N"));
}

TEST(LineBreaks, WhereALineMayBreakAnywayNothingIsAdded) {
    EXPECT_EQ(marked(QStringLiteral("one, two,")), QStringLiteral("one, two,"));
    EXPECT_EQ(marked(QStringLiteral("plain")), QStringLiteral("plain"));
    EXPECT_EQ(marked(QStringLiteral(",")), QStringLiteral(","));
    EXPECT_TRUE(withLineBreaks({}).isEmpty());
}

TEST(LineBreaks, TheTextItselfStays) {
    const QString text = QStringLiteral("a,b,c;d");
    EXPECT_EQ(withLineBreaks(text).remove(QChar(0x200B)), text);
}

}  // namespace
}  // namespace kestrix::ui
