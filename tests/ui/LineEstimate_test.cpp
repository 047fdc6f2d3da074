#include "ui/LineEstimate.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QTextLayout>

#include <cmath>
#include <random>

#include "ui/LineBreaks.h"
#include "ui/TextMeasure.h"

namespace kestrix::ui {
namespace {

constexpr double kWidth = 60;

QFont cellFont() {
    QFont font(QStringLiteral("helvetica"));
    font.setPixelSize(8);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

// As a screen lays it out.
int linesLaidOut(const QString& text) {
    QTextLayout layout(QString(text).replace(u'\n', QChar::LineSeparator), cellFont());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true);
    layout.setTextOption(option);
    int lines = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine(), ++lines)
        line.setLineWidth(kWidth);
    layout.endLayout();
    return lines;
}

class LineEstimateTest : public ::testing::Test {
  protected:
    std::optional<int> lines(const QString& text) { return estimate_.lines(withLineBreaks(text), kWidth); }
    LineEstimate estimate_{cellFont()};
    std::mt19937 random_{7};
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
};

TEST_F(LineEstimateTest, ItNeverSaysAnythingElseThanALayout) {
    const QStringList pieces{"L-PE=", "N-PE=", "V",  ",", " ", "  ",  ";", "x1/2",  "0°", ":",  ">1999ms",
                             "Ω",     "MΩ",    "mA", "-", "/", "(b)", ".", "AV",    "To", "Ty", "UL:",
                             "IΔn=",  "é",     "!",  "?", "%", "'s",  "'", "\"q\"", "–",  "1.0"};
    int told = 0;
    for (int round = 0; round < 20'000; ++round) {
        QString text;
        for (int piece = below(24); piece >= 0; --piece)
            text +=
                below(2) != 0 ? pieces[below(static_cast<int>(pieces.size()))] : QString::number(below(2000));
        const std::optional<int> lines = this->lines(text);
        if (!lines) continue;
        ++told;
        ASSERT_EQ(*lines, linesLaidOut(withLineBreaks(text))) << text.toStdString();
    }
    EXPECT_GT(told, 4'000);  // the rest are longer than a line, or at its very end
}

TEST_F(LineEstimateTest, ItTellsTheTextsOfTheTester) {
    for (const char* text : {"", "18.5Ω,2.5mA", "VISO=500V,LIMIT=1.0MΩ",
                             "230.4V,50.0Hz,L-PE=230V,N-PE=1V,L-N=229V", "IΔn=30mA,Type Of RCD=AC-G"}) {
        const QString shown = QString::fromUtf8(text);
        EXPECT_EQ(lines(shown), std::max(1, linesLaidOut(withLineBreaks(shown)))) << text;
    }
}

TEST_F(LineEstimateTest, ItLeavesToALayoutWhatIsNotPlain) {
    for (const char* text :
         {"שלום", "👷🏽", "状态", "a\nb", "a\tb", "e\u0301", "WWWWWWWWWWWWWWWWWWWWWWWWWWWWW"})
        EXPECT_EQ(lines(QString::fromUtf8(text)), std::nullopt) << text;
    EXPECT_EQ(lines(QString(10'000, u'1')), std::nullopt);
}

TEST(TextMeasureOfLongTexts, TheBeginningOfATextIsEnoughOnlyWhereItReachesTheLimit) {
    const FontTextMeasure measure;
    const auto height = [&](const QString& text, double most) {
        return measure.wrappedHeight(text, QStringLiteral("helvetica"), 8, kWidth, most);
    };
    EXPECT_EQ(height(QString(100'000, u'8'), 400), 400);
    EXPECT_EQ(height(QString(100'000, QChar(0x05D0)), 400), 400);
    // Characters without a width: all of them stand in one line.
    EXPECT_EQ(height(QStringLiteral("a") + QString(20'000, QChar(0x200D)), 400), 10);
    EXPECT_EQ(height(QString(8'000, QChar(0x200D)) + QString(2'000, u'8'), 400), 400);
}

}  // namespace
}  // namespace kestrix::ui
