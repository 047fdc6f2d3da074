// The live screen as the window draws it: what it shows for each function of the tester, and without one.
#include <set>

#include "simulator/FrameEncoder.h"
#include "tests/shell/LiveScreenFixture.h"
#include "tests/shell/Scenarios.h"
#include "ui/DisplayUpdates.h"

namespace kestrix::shell {
namespace {

class LiveScreen : public LiveScreenFixture {};

TEST_F(LiveScreen, WithoutALinkTheNoticeAndTheHelpButtonStandThere) {
    open();
    EXPECT_EQ(shownText("lblNoCon"), "Not Connected");
    EXPECT_EQ(shownText("btnHelp"), "Help");
    for (const char* name : {"D1Value", "D1Unit", "D2Value", "D2Unit", "blueImage"})
        EXPECT_FALSE(isShown(name)) << name;
    for (int number = 1; number <= 6; ++number) {
        for (const char* part : {"Row", "Angle", "Unit"})
            EXPECT_FALSE(item(QStringLiteral("RCD%1%2").arg(number).arg(QLatin1String(part))).isVisible());
    }
    EXPECT_EQ(litTitle(), 0);
    EXPECT_EQ(picture("leftAnimaImg"), "orvo_home_lightning_l4.png");
    EXPECT_EQ(picture("rightAnimaImg"), "orvo_home_lightning_r4.png");
    expectEveryTextInsideItsPlace();
}

struct FunctionShown {
    const char* scenario;
    int litTitle;
    bool alarm;
    const char* value1;
    const char* unit1;
    const char* value2;  // "-": hidden
    const char* unit2;
};
constexpr FunctionShown kFunctions[] = {
    {kEarth, 2, false, "14.3", "Ω", "2.5", "mA"},  {kInsulation, 1, false, "186.4", "MΩ", "524", "V"},
    {kLowOhm, 3, true, "OL", "Ω", "0", "mA"},      {kVoltage, 4, false, "400", "1.2.3", "50.0", "HZ"},
    {kLoop, 5, false, "> 1999", "Ω", "----", "A"}, {kRcd, 6, true, ">1999", "mS", "-", "-"},
    {kRcdFourRows, 6, true, "-", "-", "-", "-"},   {kRcd, 6, true, ">1999", "mS", "-", "-"},
    {kRcdSixRows, 6, false, "-", "-", "-", "-"},   {kInsulation, 1, false, "186.4", "MΩ", "524", "V"},
};

TEST_F(LiveScreen, EachFunctionShowsItsReadingsAndLightsItsTitle) {
    open();
    tester().appear();
    for (const FunctionShown& row : kFunctions) {
        SCOPED_TRACE(row.scenario);
        tester().play(row.scenario);
        settle();
        EXPECT_EQ(litTitle(), row.litTitle);
        EXPECT_EQ(isShown("blueImage"), row.alarm);
        EXPECT_EQ(shownText("D1Value"), row.value1);
        EXPECT_EQ(shownText("D1Unit"), row.unit1);
        EXPECT_EQ(shownText("D2Value"), row.value2);
        EXPECT_EQ(shownText("D2Unit"), row.unit2);
        EXPECT_FALSE(isShown("lblNoCon"));
        EXPECT_FALSE(isShown("btnHelp"));
        const bool sequence = row.scenario == kRcdSixRows || row.scenario == kRcdFourRows;
        for (int number = 1; number <= 6; ++number) {
            const bool inUse = sequence && (number <= 4 || row.scenario == kRcdSixRows);
            for (const char* part : {"Row", "Angle", "Unit"}) {
                const QString name = QStringLiteral("RCD%1%2").arg(number).arg(QLatin1String(part));
                EXPECT_EQ(item(name).isVisible(), inUse) << name.toStdString();
            }
        }
        expectEveryTextInsideItsPlace();
    }
}

TEST_F(LiveScreen, ARunningSequenceShowsOneTripTimeAfterTheOther) {
    open();
    tester().appear();
    std::vector<std::string> shown;
    simulator::Display display;
    display.function = simulator::Function::Rcd;
    display.autoTest = true;
    for (std::uint16_t frame = 1; frame <= 13; ++frame) {
        display.readings[0] = {.magnitude = static_cast<std::uint16_t>(100 + frame), .decimals = 1};
        tester().send(simulator::encodeFrame(display));
        settle();
        std::string row;
        for (int number = 1; number <= 6; ++number) {
            const QString name = QStringLiteral("RCD%1Value").arg(number);
            const QString value = testing::textOf(item(name)).property("text").toString().trimmed();
            if (item(name).isVisible() && !value.isEmpty())
                row += std::to_string(number) + ":" + value.toStdString() + " ";
        }
        if (shown.empty() || shown.back() != row) shown.push_back(row);
    }
    EXPECT_EQ(shown, (std::vector<std::string>{"", "1:10.3 ", "2:10.5 ", "3:10.7 ", "4:10.9 ", "5:11.1 ",
                                               "6:11.3 "}));
}

TEST_F(LiveScreen, ALostLinkLeavesOnlyTheTripTimeOfASequence) {
    open();
    showReading(kRcdSixRows);
    EXPECT_TRUE(isShown("RCD6Value"));
    tester().leave();
    settle();
    EXPECT_EQ(shownText("RCD6Value"), "8.8");
    EXPECT_FALSE(isShown("RCD6Row"));
    EXPECT_FALSE(isShown("RCD6Unit"));
    EXPECT_TRUE(isShown("lblNoCon"));
    EXPECT_EQ(litTitle(), 0);
}

TEST_F(LiveScreen, ATesterThatGoesTakesReadingAlarmAndTitleAway) {
    open();
    const QImage before = onDisplay();
    showReading(kLowOhm);
    EXPECT_NE(onDisplay(), before);
    tester().leave();
    settle();
    EXPECT_EQ(onDisplay(), before);
}

TEST_F(LiveScreen, TheWarningIsItsPicture) {
    open();
    showReading(kLowOhm);
    EXPECT_EQ(picture("blueImage"), "flash.png");
}

// Every unit with the widest of what a tester shows beside it.
TEST_F(LiveScreen, NoTextOfAnyFunctionIsWiderThanItsPlace) {
    open();
    tester().appear();
    const simulator::Reading kReadings[] = {
        {.noData = true},
        {.overload = true},
        {.magnitude = 65535},
        {.magnitude = 65535, .decimals = 1, .marked = true},
        {.magnitude = 65535, .decimals = 3, .marked = true},
        {.magnitude = 8, .decimals = 5, .marked = true},
    };
    std::set<QString> seen;
    for (std::size_t function = 0; function < simulator::kFunctions; ++function) {
        for (std::uint8_t unit = 0; unit < 8; ++unit) {
            for (simulator::Reading reading : kReadings) {
                reading.unitCode = unit;
                simulator::Display display;
                display.function = static_cast<simulator::Function>(function);
                display.settings[0] = 1;  // an RCD test that is no sequence
                display.readings = {reading, reading, reading, reading};
                display.wiresPresent = true;
                tester().send(simulator::encodeFrame(display));
                ui::DisplayUpdates::shared().flush();
                expectEveryTextInsideItsPlace();
                seen.insert(text("D1Value") + text("D1Unit"));
            }
        }
    }
    EXPECT_GT(seen.size(), 60U);
}

TEST_F(LiveScreen, NoTextOfTheBuiltInScenarioIsWiderThanItsPlace) {
    options_.uris = {"simulator:house"};
    open();
    std::set<std::string> functions;
    for (int frame = 0; frame < 600; ++frame) {
        scheduler_.advance(std::chrono::milliseconds(250));
        ui::DisplayUpdates::shared().flush();
        expectEveryTextInsideItsPlace();
        functions.insert(screen().strfunction().value_or(""));
    }
    EXPECT_GE(functions.size(), 10U);
}

TEST_F(LiveScreen, TheLightningRunsWhileTheTesterIsThere) {
    open();
    tester().appear();
    for (int frame = 0; frame < 13; ++frame) {
        settle();
        const std::string number = std::to_string(frame % 6 + 1);
        EXPECT_EQ(picture("leftAnimaImg"), "orvo_home_lightning_l" + number + ".png");
        EXPECT_EQ(picture("rightAnimaImg"), "orvo_home_lightning_r" + number + ".png");
        const QRect left = pixelsOf(placeOf("leftAnimaImg"));
        const QImage before = onDisplay().copy(left);
        scheduler_.advance(std::chrono::milliseconds(frame % 3 == 2 ? 166 : 167));
        settle();
        EXPECT_NE(onDisplay().copy(left), before) << frame;
    }
}

TEST_F(LiveScreen, TheLightningStandsStillWithoutATester) {
    open();
    const QImage before = onDisplay();
    scheduler_.advance(std::chrono::milliseconds(1000));
    settle();
    EXPECT_EQ(onDisplay(), before);
    tester().appear();
    scheduler_.advance(std::chrono::milliseconds(400));
    tester().leave();
    scheduler_.advance(std::chrono::milliseconds(400));
    settle();
    EXPECT_EQ(onDisplay(), before);
}

TEST_F(LiveScreen, AWindowThatOpensOnALinkShowsItBeforeTheFirstReading) {
    start();
    tester().appear();
    open();
    EXPECT_FALSE(isShown("lblNoCon"));
    EXPECT_FALSE(isShown("btnHelp"));
    EXPECT_EQ(litTitle(), 0);
    EXPECT_FALSE(isShown("D1Value"));
    scheduler_.advance(std::chrono::milliseconds(170));
    settle();
    EXPECT_EQ(picture("leftAnimaImg"), "orvo_home_lightning_l2.png");
}

}  // namespace
}  // namespace kestrix::shell
