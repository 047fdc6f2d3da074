// The window for those who do not see it, and for the keyboard.
#include <QAccessible>

#include <functional>
#include <map>

#include "tests/shell/Scenarios.h"
#include "tests/support/Contrast.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

class Accessibility : public testing::WindowFixture {
  protected:
    // Calls with everything that a screen reader finds.
    void walk(const std::function<void(QAccessibleInterface&)>& call) {
        QAccessibleInterface* const root = QAccessible::queryAccessibleInterface(&window());
        ASSERT_NE(root, nullptr);
        walkBelow(*root, call);
    }
    // Names of the items to the names that a screen reader says.
    std::map<std::string, std::string> spoken() {
        std::map<std::string, std::string> names;
        walk([&names](QAccessibleInterface& found) {
            names[found.object()->objectName().toStdString()] = found.text(QAccessible::Name).toStdString();
        });
        return names;
    }
    std::string reading() {
        settle();
        return spoken()["spokenReading"];
    }
    void expectEveryFindToBeNamedAndShown() {
        int found = 0;
        walk([&found](QAccessibleInterface& one) {
            const std::string name = one.object()->objectName().toStdString();
            EXPECT_FALSE(one.text(QAccessible::Name).trimmed().isEmpty()) << name << " has no name";
            EXPECT_NE(one.role(), QAccessible::NoRole) << name;
            EXPECT_NE(one.role(), QAccessible::Client) << name;
            const auto* shown = qobject_cast<QQuickItem*>(one.object());
            ASSERT_NE(shown, nullptr);
            EXPECT_TRUE(shown->isVisible()) << name << " is hidden";
            EXPECT_GT(shown->width() * shown->height(), 0) << name;
            ++found;
        });
        EXPECT_GT(found, 15);
    }

  private:
    static void walkBelow(QAccessibleInterface& parent,
                          const std::function<void(QAccessibleInterface&)>& call) {
        for (int i = 0; i < parent.childCount(); ++i) {
            QAccessibleInterface* const child = parent.child(i);
            ASSERT_NE(child, nullptr);
            call(*child);
            walkBelow(*child, call);
        }
    }
};

constexpr const char* kStops[] = {"Leftbtn", "btnTester", "Rightbtn", "spokenReading",
                                  "btnHelp", "tableView", "btnRecord"};

TEST_F(Accessibility, EverythingThatIsFoundHasANameARoleAndIsThere) {
    open();
    expectEveryFindToBeNamedAndShown();
    for (const char* scenario : kAll) {
        SCOPED_TRACE(scenario);
        tester().appear();
        tester().play(scenario);
        screen().pressRecord();
        settle();
        expectEveryFindToBeNamedAndShown();
        tester().leave();
        settle();
        expectEveryFindToBeNamedAndShown();
    }
}

// The other way round: nothing that is to be seen is kept from a screen reader.
TEST_F(Accessibility, EveryTextThatIsShownIsFound) {
    open();
    tester().appear();
    for (const char* scenario : kAll) {
        tester().play(scenario);
        settle();
        std::string all;
        for (const auto& [item, name] : spoken()) all += name + "\n";
        for (const QQuickItem* text : testing::shownTexts(item("stage"))) {
            const std::string words = text->property("text").toString().trimmed().toStdString();
            EXPECT_NE(all.find(words), std::string::npos) << words;
        }
    }
}

TEST_F(Accessibility, ControlsSayWhatTheyAre) {
    open();
    const auto roleOf = [this](const char* name) {
        return QAccessible::queryAccessibleInterface(&item(name))->role();
    };
    for (const char* button : {"Leftbtn", "Rightbtn", "btnHelp", "btnRecord"})
        EXPECT_EQ(roleOf(button), QAccessible::Button) << button;
    EXPECT_EQ(roleOf("tableView"), QAccessible::Table);
    EXPECT_EQ(roleOf("spokenReading"), QAccessible::StaticText);
    auto names = spoken();
    EXPECT_EQ(names["Leftbtn"], "Menu");
    EXPECT_EQ(names["Rightbtn"], "Saved test records");
    EXPECT_EQ(names["btnHelp"], "Help");
    EXPECT_EQ(names["btnRecord"], "Record");
    EXPECT_EQ(names["lblNoCon"], "Not Connected");
    EXPECT_EQ(names["tableView"], "Measurements of this session: 0");
    EXPECT_EQ(names["mainView"], "Live display");
}

TEST_F(Accessibility, WhatIsHiddenIsNotFound) {
    open();
    auto names = spoken();
    for (const char* name : {"D1Value", "D2Unit", "RCD1Row", "blueImage", "leftAnimaImg"})
        EXPECT_EQ(names.count(name), 0U) << name;
    showReading(kLowOhm);
    names = spoken();
    for (const char* name : {"lblNoCon", "btnHelp", "RCD1Row", "RCD1Value"})
        EXPECT_EQ(names.count(name), 0U) << name;
    EXPECT_EQ(names["blueImage"], "Limit exceeded");
    EXPECT_EQ(names["D1Value"], "OL");
}

TEST_F(Accessibility, ARowSaysItsColumnsAndTheListHowManyThereAre) {
    open();
    showReading(kInsulation);
    screen().pressRecord();
    screen().pressRecord();
    settle();
    auto names = spoken();
    EXPECT_EQ(names["tableView"], "Measurements of this session: 2");
    const live::SessionRow& row = screen().dataList()->row(1);
    EXPECT_EQ(names["sessionRow1"], "S_2, INSULATION, " + row.Parameters + ", 186.4MΩ,524V, " + row.DateTime);
    EXPECT_EQ(names["Rightbtn"], "Save test record");
    screen().pressClearTable();
    settle();
    EXPECT_EQ(spoken()["Rightbtn"], "Saved test records");
}

TEST_F(Accessibility, TheReadingIsSaidAsAWhole) {
    open();
    EXPECT_EQ(reading(), "Not Connected");
    tester().appear();
    EXPECT_EQ(reading(), "No reading");
    tester().play(kInsulation);
    EXPECT_EQ(reading(), "INSULATION, 186.4 MΩ, 524 V");
    tester().play(kLowOhm);
    EXPECT_EQ(reading(), "LOW OHM, OL Ω, 0 mA, Limit exceeded");
    tester().play(kRcd);
    EXPECT_EQ(reading(), "RCD, >1999 mS, Limit exceeded");
    tester().play(kRcdSixRows);
    EXPECT_EQ(reading(), "RCD, x5 180°: 8.8 ms");
    tester().leave();
    EXPECT_EQ(reading(), "Not Connected");
}

TEST_F(Accessibility, TheKeyRMovesToTheReadingAndSaysItAgain) {
    open();
    showReading(kEarth);
    int arrivals = 0;
    QQuickItem& spokenReading = item("spokenReading");
    const QObject untilTheEndOfThisTest;
    QObject::connect(&spokenReading, &QQuickItem::activeFocusChanged, &untilTheEndOfThisTest,
                     [&] { arrivals += spokenReading.hasActiveFocus() ? 1 : 0; });
    item("btnRecord").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_R);
    EXPECT_EQ(focused(), "spokenReading");
    EXPECT_EQ(arrivals, 1);
    pressKey(Qt::Key_R);
    EXPECT_EQ(focused(), "spokenReading");
    EXPECT_EQ(arrivals, 2);
    EXPECT_EQ(screen().dataList()->count(), 0);
}

TEST_F(Accessibility, TheFocusIsWhereTheScreenReaderSays) {
    open();
    for (const char* stop : kStops) {
        item(stop).forceActiveFocus(Qt::TabFocusReason);
        EXPECT_TRUE(QAccessible::queryAccessibleInterface(&item(stop))->state().focused) << stop;
        EXPECT_TRUE(QAccessible::queryAccessibleInterface(&item(stop))->state().focusable) << stop;
    }
}

TEST_F(Accessibility, NothingIsFramedBeforeTheKeyboardIsUsed) {
    open();
    EXPECT_EQ(focused(), "mainView");
    showReading(kEarth);
    click("btnRecord");
    tap("btnRecord");
    EXPECT_EQ(focused(), "mainView");
}

TEST_F(Accessibility, TabGoesRoundAllControlsFromTopToBottomAndBack) {
    open();
    for (int round = 0; round < 2; ++round) {
        for (const char* stop : kStops) {
            pressKey(Qt::Key_Tab);
            EXPECT_EQ(focused(), stop);
        }
    }
    for (auto stop = std::rbegin(kStops) + 1; stop != std::rend(kStops); ++stop) {
        pressKey(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(focused(), *stop);
    }
}

TEST_F(Accessibility, TabLeavesOutAHiddenButton) {
    open();
    showReading(kEarth);
    item("spokenReading").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "tableView");
}

TEST_F(Accessibility, AButtonThatDisappearsUnderTheFocusDoesNotTakeTheKeyboardAlong) {
    open();
    item("btnHelp").forceActiveFocus(Qt::TabFocusReason);
    showReading(kEarth);
    EXPECT_EQ(focused(), "mainView");
    pressKey(Qt::Key_Space);
    EXPECT_EQ(screen().dataList()->count(), 1);
}

TEST_F(Accessibility, SpaceRecordsFromAnywhereButAnotherButton) {
    open();
    showReading(kEarth);
    int rows = 0;
    for (const char* stop : {"mainView", "spokenReading", "tableView", "btnRecord"}) {
        item(stop).forceActiveFocus(Qt::TabFocusReason);
        pressKey(Qt::Key_Space);
        EXPECT_EQ(screen().dataList()->count(), ++rows) << stop;
    }
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        item("Rightbtn").forceActiveFocus(Qt::TabFocusReason);
        pressKey(key);
        EXPECT_EQ(screen().dataList()->count(), rows);
        EXPECT_EQ(app().screens().count(), 1) << "the save form";
        app().screens().dismiss(false);
        settle();
    }
}

// Where a line of the frame runs, it differs from what was there by 3 : 1 or more.
TEST_F(Accessibility, TheFrameAroundTheFocusStandsOutOnEveryGround) {
    open();
    const QImage without = onDisplay();
    for (const char* stop : kStops) {
        item(stop).forceActiveFocus(Qt::TabFocusReason);
        settle();
        const QImage with = onDisplay();
        QQuickItem& drawn = *testing::findItem(item(stop), QStringLiteral("focusFrame"));
        EXPECT_TRUE(drawn.isVisible()) << stop;
        EXPECT_TRUE(placeOf(stop).adjusted(-2, -2, 2, 2).contains(placeOf(drawn))) << stop;
        const QRect frame = pixelsOf(placeOf(drawn));
        double worst = 21;
        const auto look = [&](QPoint at, QPoint inward) {
            double best = 0;
            for (const QPoint& pixel : {at, at + inward})
                best = std::max(best, testing::contrast(with.pixel(pixel), without.pixel(pixel)));
            worst = std::min(worst, best);
        };
        for (int x = frame.left() + 2; x < frame.right() - 2; ++x) {
            look({x, frame.top()}, {0, 1});
            look({x, frame.bottom()}, {0, -1});
        }
        for (int y = frame.top() + 2; y < frame.bottom() - 2; ++y) {
            look({frame.left(), y}, {1, 0});
            look({frame.right(), y}, {-1, 0});
        }
        EXPECT_GE(worst, 3) << stop;
    }
}

}  // namespace
}  // namespace kestrix::shell
