#include "ui/Label.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "tests/ui/TestScreen.h"

namespace kestrix::ui {
namespace {

TEST(Label, IsEmptyAndBlackOnTransparentInArial17AtFirst) {
    const TestScreen screen;
    EXPECT_TRUE(screen.text.text().isEmpty());
    EXPECT_EQ(screen.text.backgroundColor().alpha(), 0);
    EXPECT_EQ(screen.text.textColor(), QColor(Qt::black));
    EXPECT_EQ(screen.text.fontFamily(), QStringLiteral("Arial"));
    EXPECT_EQ(screen.text.fontSize(), 17);
    EXPECT_EQ(screen.text.alignment(), Qt::AlignLeft);
    EXPECT_FALSE(screen.text.shrinksToFit());
}

TEST(Label, KeepsWhatIsSetAtOnce) {
    TestScreen screen;
    Label& label = screen.text;
    label.setText(QStringLiteral("0.12"));
    label.setBackgroundColor(QColor(39, 121, 205));
    label.setTextColor(Qt::white);
    label.setFont(QStringLiteral("Arial"), 20);
    label.setAlignment(Qt::AlignHCenter);
    label.setShrinksToFit(true);
    EXPECT_EQ(label.text(), QStringLiteral("0.12"));
    EXPECT_EQ(label.backgroundColor(), QColor(39, 121, 205));
    EXPECT_EQ(label.textColor(), QColor(Qt::white));
    EXPECT_EQ(label.fontFamily(), QStringLiteral("Arial"));
    EXPECT_EQ(label.fontSize(), 20);
    EXPECT_EQ(label.alignment(), Qt::AlignHCenter);
    EXPECT_TRUE(label.shrinksToFit());
}

// One row for each thing that can change.
struct Change {
    const char* what;
    std::function<void(Label&)> make;
    int texts, backgrounds, styles;  // signals
};

TEST(Label, TellsEachChangeByItsOwnSignalAndTheSameOnceMoreByNone) {
    const std::vector<Change> changes{
        {"text", [](Label& label) { label.setText(QStringLiteral("V")); }, 1, 0, 0},
        {"background", [](Label& label) { label.setBackgroundColor(Qt::red); }, 0, 1, 0},
        {"text colour", [](Label& label) { label.setTextColor(Qt::red); }, 0, 0, 1},
        {"family", [](Label& label) { label.setFont(QStringLiteral("Courier"), label.fontSize()); }, 0, 0, 1},
        {"size", [](Label& label) { label.setFont(label.fontFamily(), 8); }, 0, 0, 1},
        {"alignment", [](Label& label) { label.setAlignment(Qt::AlignHCenter); }, 0, 0, 1},
        {"shrinking", [](Label& label) { label.setShrinksToFit(true); }, 0, 0, 1},
    };
    for (const Change& change : changes) {
        SCOPED_TRACE(change.what);
        TestScreen screen;
        const SignalCount texts(screen.text, &Label::textChanged);
        const SignalCount backgrounds(screen.text, &Label::backgroundColorChanged);
        const SignalCount styles(screen.text, &Label::styleChanged);
        for (int round = 1; round <= 2; ++round) {
            change.make(screen.text);
            tellDisplay();
            EXPECT_EQ(texts(), change.texts);
            EXPECT_EQ(backgrounds(), change.backgrounds);
            EXPECT_EQ(styles(), change.styles);
        }
    }
}

TEST(Label, ATextThatStaysLeavesTheDisplayIdle) {
    TestScreen screen;
    screen.text.setText(QStringLiteral("230"));
    screen.text.setBackgroundColor(Qt::red);
    tellDisplay();
    screen.text.setText(QStringLiteral("230"));
    screen.text.setBackgroundColor(Qt::red);
    EXPECT_TRUE(DisplayUpdates::shared().idle());
}

}  // namespace
}  // namespace kestrix::ui
