#include "ui/TextMeasure.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QFontMetricsF>

#include <cmath>

namespace kestrix::ui {
namespace {

const QString kFamily = QStringLiteral("helvetica");
constexpr double kEnough = 10000;

class TextMeasureTest : public ::testing::Test {
  protected:
    // In the column of the session list.
    double height(const QString& text, double most = kEnough) const {
        return measure_.wrappedHeight(text, kFamily, 8, 60, most);
    }
    int lines(const QString& text) const {
        const double lines = height(text) / line_;
        EXPECT_DOUBLE_EQ(lines, std::round(lines));
        return static_cast<int>(std::round(lines));
    }

    FontTextMeasure measure_;
    double line_ = height(QStringLiteral("x"));
};

TEST_F(TextMeasureTest, TheEmptyTextTakesNoRoom) {
    EXPECT_EQ(height({}), 0);
    EXPECT_EQ(height(QStringLiteral("")), 0);
}

TEST_F(TextMeasureTest, ALineIsAboutAsHighAsItsFont) {
    EXPECT_GT(line_, 8);
    EXPECT_LT(line_, 12);
    EXPECT_EQ(height(QStringLiteral("Wg|")), line_);
}

TEST_F(TextMeasureTest, ALineTakesAllTheRoomThatItsFontAsksForLeadingIncluded) {
    for (const int size : {7, 8, 17, 40}) {
        QFont font(kFamily);
        font.setPixelSize(size);
        const double line = measure_.wrappedHeight(QStringLiteral("x"), kFamily, size, 60, kEnough);
        EXPECT_GE(line, QFontMetricsF(font).lineSpacing()) << size;
        EXPECT_LT(line, QFontMetricsF(font).lineSpacing() + 2) << size;
    }
}

TEST_F(TextMeasureTest, AFontOfTwiceTheSizeIsTwiceAsHigh) {
    EXPECT_NEAR(measure_.wrappedHeight(QStringLiteral("x"), kFamily, 16, 60, kEnough), 2 * line_, 1);
}

TEST_F(TextMeasureTest, ALongerTextIsNeverLowerAndIsHigherInTheEnd) {
    double before = 0;
    QString text;
    for (int words = 0; words < 40; ++words) {
        text += QStringLiteral("L-PE=230V,");
        EXPECT_GE(height(text), before);
        before = height(text);
    }
    EXPECT_GT(before, 20 * line_);
}

TEST_F(TextMeasureTest, NothingIsHigherThanTheLimit) {
    const QString text(2000, u'x');
    EXPECT_EQ(height(text, 300), 300);
    EXPECT_EQ(height(QStringLiteral("x"), 300), line_);
    EXPECT_EQ(height(QStringLiteral("x"), 1), 1);
}

TEST_F(TextMeasureTest, ATextIsWrappedAtItsWords) {
    // Each fits a line; two do not.
    EXPECT_EQ(lines(QStringLiteral("mmmmmm")), 1);
    EXPECT_EQ(lines(QStringLiteral("mmmmmm mmmmmm")), 2);
    EXPECT_EQ(lines(QStringLiteral("mmmmmm mmmmmm mmmmmm")), 3);
    EXPECT_EQ(lines(QStringLiteral("mm mm")), 1);
}

TEST_F(TextMeasureTest, AWordThatIsWiderThanTheColumnIsBroken) {
    // 13 of these fit a line.
    EXPECT_EQ(lines(QString(13, u'0')), 1);
    EXPECT_EQ(lines(QString(14, u'0')), 2);
    EXPECT_EQ(lines(QString(130, u'0')), 10);
    EXPECT_EQ(lines(QString(131, u'0')), 11);
}

TEST_F(TextMeasureTest, AWiderColumnTakesFewerLines) {
    const QString text(80, u'm');
    EXPECT_EQ(measure_.wrappedHeight(text, kFamily, 8, 1000, kEnough), line_);
}

TEST_F(TextMeasureTest, ALineFeedBeginsANewLine) {
    EXPECT_EQ(lines(QStringLiteral("a\nb")), 2);
    EXPECT_EQ(lines(QStringLiteral("a\n\nb")), 3);
}

TEST_F(TextMeasureTest, TextsOfAnyScriptTakeRoom) {
    for (const char* text : {"Ω", "状态", "שלום", "🔌", "\xCC\x81"})
        EXPECT_GT(height(QString::fromUtf8(text)), 0) << text;
}

}  // namespace
}  // namespace kestrix::ui
