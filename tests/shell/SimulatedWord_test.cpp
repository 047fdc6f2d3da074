// While no tester measures the readings, the live screen itself says so: in full screen there is no title
// bar.
#include <QAccessible>

#include "tests/shell/Scenarios.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

class SimulatedWord : public testing::WindowWalks {
  protected:
    bool isSaid() {
        for (QAccessibleInterface* one : found()) {
            if (one->text(QAccessible::Name) == QStringLiteral("Simulated")) return true;
        }
        return false;
    }
    void expectReadableAndFound() {
        EXPECT_TRUE(isShown("lblSimulated"));
        EXPECT_TRUE(isSaid());
        const QQuickItem& word = testing::textOf(item("lblSimulated"));
        EXPECT_LE(word.property("paintedWidth").toDouble(), word.width());
        EXPECT_LE(word.property("paintedHeight").toDouble(), word.height());
        for (const int scale : {3, 1}) {
            resize(kSmall * scale);
            for (const std::string& problem : contrastProblems())
                EXPECT_EQ(problem.find("Simulated"), std::string::npos) << problem;
        }
        EXPECT_EQ(testing::inLines(accessibilityProblems()), "");
    }
};

TEST_F(SimulatedWord, StandsOnTheDisplayWhileTheSourceIsTheSimulator) {
    options_.uris = {"simulator:earth"};
    open();
    EXPECT_EQ(text("lblSimulated"), QStringLiteral("Simulated"));
    expectReadableAndFound();
    scheduler_.advance(std::chrono::seconds(2));
    settle();
    EXPECT_EQ(screen().bluestate, 1);
    expectReadableAndFound();
}

TEST_F(SimulatedWord, IsNotThereForATester) {
    options_.uris = {"tcp://127.0.0.1:1"};
    open();
    EXPECT_FALSE(isShown("lblSimulated"));
    EXPECT_FALSE(isSaid());
    showReading(kEarth);
    EXPECT_FALSE(isShown("lblSimulated"));
    EXPECT_FALSE(isSaid());
}

TEST_F(SimulatedWord, CanBeReadAndIsFoundWhateverTheDisplayShows) {
    options_.simulated = true;
    open();
    expectReadableAndFound();
    for (const char* scenario : kAll) {
        SCOPED_TRACE(scenario);
        showReading(scenario);
        screen().pressRecord();
        expectReadableAndFound();
        tester().leave();
        settle();
    }
}

// Shown or hidden: what never has its place can cover it in no state.
TEST_F(SimulatedWord, StandsWhereNothingElseOfTheDisplayDoes) {
    options_.simulated = true;
    open();
    QQuickItem& word = item("lblSimulated");
    EXPECT_TRUE(placeOf("displayPanel").adjusted(4, 4, -4, -4).contains(placeOf(word)));
    EXPECT_EQ(placeOf(word).center().x(), placeOf("displayPanel").center().x());
    QQuickItem* const meter = word.parentItem();
    int others = 0;
    for (QQuickItem* other : testing::itemsUnder(*meter)) {
        if (other == meter || other == &word || word.isAncestorOf(other)) continue;
        if (other->width() * other->height() <= 0) continue;
        EXPECT_FALSE(placeOf(*other).intersects(placeOf(word))) << other->objectName().toStdString();
        ++others;
    }
    EXPECT_GT(others, 34);  // readings and RCD rows, and what stands around them
}

}  // namespace
}  // namespace kestrix::shell
