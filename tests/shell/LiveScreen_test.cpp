// The live screen as the window draws it: what stands where, and what it shows for each function.
#include <QFont>
#include <QFontInfo>

#include <set>

#include "simulator/FrameEncoder.h"
#include "tests/shell/Scenarios.h"
#include "tests/support/WindowFixture.h"
#include "ui/DisplayUpdates.h"

namespace kestrix::shell {
namespace {

class LiveScreen : public testing::WindowFixture {
  protected:
    std::string shownText(const char* name) { return isShown(name) ? text(name).toStdString() : "-"; }
    std::string picture(const char* name) {
        return item(name).property("source").toUrl().fileName().toStdString();
    }
    // The number of the title that is lit; 0 when none is, -1 when several are.
    int litTitle() {
        int lit = 0;
        for (int number = 1; number <= 6; ++number) {
            const auto colour = item(QStringLiteral("fun%1").arg(number)).property("color").value<QColor>();
            if (colour == QColor(39, 121, 205)) {
                lit = lit == 0 ? number : -1;
            } else {
                EXPECT_EQ(colour.alpha(), 0) << number;
            }
        }
        return lit;
    }
    void expectEveryTextInsideItsPlace() {
        for (QQuickItem* shown : testing::shownTexts(item("mainView"))) {
            EXPECT_LE(shown->property("paintedWidth").toDouble(), shown->width() + 0.01)
                << shown->property("text").toString().toStdString() << " in "
                << shown->parentItem()->objectName().toStdString();
        }
    }
};

struct Place {
    const char* name;
    QRectF place;
};

// On a stage of 480 points and more. A height of 0 and less: counted from the stage's lower end.
constexpr Place kPlaces[] = {
    {"toolbar", {0, 0, 320, 44}},
    {"displayBackground", {0, 44, 320, 530}},
    {"toolbarLine", {0, 44, 320, 2}},
    {"displayPanel", {10, 45, 300, 130}},
    {"leftAnimaImg", {0, 52, 40, 121}},
    {"rightAnimaImg", {280, 52, 40, 121}},
    {"blueImage", {32, 66, 25, 25}},
    {"btnHelp", {135, 80, 45, 20}},
    {"lblNoCon", {125, 115, 70, 20}},
    {"D1Value", {50, 85, 180, 25}},
    {"D1Unit", {240, 85, 50, 25}},
    {"D2Value", {50, 130, 180, 25}},
    {"D2Unit", {240, 130, 50, 25}},
    {"fun1", {0, 175, 78, 31}},
    {"separator1", {78, 175, 2, 31}},
    {"fun2", {80, 175, 30, 31}},
    {"separator2", {110, 175, 2, 31}},
    {"fun3", {112, 175, 70, 31}},
    {"separator3", {182, 175, 2, 31}},
    {"fun4", {184, 175, 20, 31}},
    {"separator4", {204, 175, 2, 31}},
    {"fun5", {206, 175, 72, 31}},
    {"separator5", {278, 175, 2, 31}},
    {"fun6", {280, 175, 40, 31}},
    {"headerDataName", {0, 206, 50, 25}},
    {"headerFunction", {51, 206, 44, 25}},
    {"headerParameters", {96, 206, 61, 25}},
    {"headerResult", {158, 206, 60, 25}},
    {"headerDateTime", {219, 206, 50, 25}},
    {"headerComments", {270, 206, 50, 25}},
};

struct RcdPart {
    const char* name;
    double x;
    double width;
};
constexpr RcdPart kRcdParts[] = {{"Row", 45, 50}, {"Angle", 95, 50}, {"Value", 150, 80}, {"Unit", 235, 50}};

constexpr QSize kSizes[] = {{320, 568}, {384, 682}, {960, 1706}, {1200, 700}};

void expectPlace(const QRectF& found, const QRectF& wanted, const std::string& name) {
    constexpr double kRounding = 1e-6;
    EXPECT_NEAR(found.x(), wanted.x(), kRounding) << name;
    EXPECT_NEAR(found.y(), wanted.y(), kRounding) << name;
    EXPECT_NEAR(found.width(), wanted.width(), kRounding) << name;
    EXPECT_NEAR(found.height(), wanted.height(), kRounding) << name;
}

TEST_F(LiveScreen, EverythingStandsAtItsPlaceAtEverySizeOfTheWindow) {
    open();
    for (const QSize& size : kSizes) {
        SCOPED_TRACE(std::to_string(size.width()) + " wide");
        resize(size);
        for (const Place& row : kPlaces) expectPlace(placeOf(row.name), row.place, row.name);
        for (int number = 1; number <= 6; ++number) {
            for (const RcdPart& part : kRcdParts) {
                const QString name = QStringLiteral("RCD%1%2").arg(number).arg(QLatin1String(part.name));
                expectPlace(placeOf(item(name)), {part.x, 55.0 + 15 * number, part.width, 15},
                            name.toStdString());
            }
        }
        const double bottom = item("points").height();
        expectPlace(placeOf("listBackground"), {0, 175, 320, bottom - 175}, "listBackground");
        expectPlace(placeOf("tableView"), {0, 231, 320, bottom - 56 - 231}, "tableView");
        expectPlace(placeOf("bottomBar"), {0, bottom - 60, 320, 60}, "bottomBar");
        expectPlace(placeOf("btnRecord"), {108, bottom - 58, 102, 56}, "btnRecord");
        EXPECT_TRUE(QRectF(0, 0, 50, 44).contains(placeOf("Leftbtn")));
        EXPECT_TRUE(QRectF(270, 0, 50, 44).contains(placeOf("Rightbtn")));
    }
}

struct FixedText {
    const char* name;
    const char* text;
    int size;  // of the font
};
constexpr FixedText kFixedTexts[] = {
    {"RCD1Row", "x1/2", 14},
    {"RCD1Angle", "0° :", 14},
    {"RCD1Unit", "ms", 14},
    {"RCD2Row", "x1/2", 14},
    {"RCD2Angle", "180°:", 14},
    {"RCD2Unit", "ms", 14},
    {"RCD3Row", "x1 ", 14},
    {"RCD3Angle", "0° :", 14},
    {"RCD3Unit", "ms", 14},
    {"RCD4Row", "x1 ", 14},
    {"RCD4Angle", "180°:", 14},
    {"RCD4Unit", "ms", 14},
    {"RCD5Row", "x5 ", 14},
    {"RCD5Angle", "0° :", 14},
    {"RCD5Unit", "ms", 14},
    {"RCD6Row", "x5 ", 14},
    {"RCD6Angle", "180°:", 14},
    {"RCD6Unit", "ms", 14},
    {"fun1", "INSULATION", 12},
    {"fun2", "RE", 12},
    {"fun3", "LOW OHM", 12},
    {"fun4", "V", 12},
    {"fun5", "LOOP/PFC", 12},
    {"fun6", "RCD", 12},
    {"headerDataName", "Data Name", 8},
    {"headerFunction", "Function", 8},
    {"headerParameters", "Parameters", 8},
    {"headerResult", "Result", 8},
    {"headerDateTime", "Date Time", 8},
    {"headerComments", "Comments", 8},
    {"RCD1Value", " ", 14},
    {"RCD6Value", " ", 14},
    {"D1Value", "", 20},
    {"D1Unit", "", 20},
    {"D2Value", "", 20},
    {"D2Unit", "", 20},
};

TEST_F(LiveScreen, ALabelHasItsTextCentredInWhiteInItsFont) {
    open();
    for (const FixedText& row : kFixedTexts) {
        const QQuickItem& label = testing::textOf(item(row.name));
        EXPECT_EQ(label.property("text").toString(), QString::fromUtf8(row.text)) << row.name;
        EXPECT_EQ(label.property("color").value<QColor>(), QColor(Qt::white)) << row.name;
        EXPECT_EQ(label.property("horizontalAlignment").toInt(), Qt::AlignHCenter) << row.name;
        EXPECT_EQ(label.property("verticalAlignment").toInt(), Qt::AlignVCenter) << row.name;
        const auto font = label.property("font").value<QFont>();
        EXPECT_EQ(font.family(), QStringLiteral("Arial")) << row.name;
        EXPECT_EQ(font.pixelSize(), row.size) << row.name;
        EXPECT_EQ(QFontInfo(font).family(), QStringLiteral("Liberation Sans")) << row.name;
    }
}

TEST_F(LiveScreen, AHeaderStandsOnItsGroundAndEverythingElseOnThePictureBehindIt) {
    open();
    for (const FixedText& row : kFixedTexts) {
        const bool header = QString::fromLatin1(row.name).startsWith(QStringLiteral("header"));
        const auto ground = item(row.name).property("color").value<QColor>();
        EXPECT_EQ(ground, header ? QColor(69, 94, 149) : QColor(Qt::transparent)) << row.name;
    }
}

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

TEST_F(LiveScreen, TheNoticeIsCentredAndAsLargeAsItsPlaceAllows) {
    open();
    const QQuickItem& notice = testing::textOf(item("lblNoCon"));
    EXPECT_EQ(notice.property("color").value<QColor>(), QColor(Qt::white));
    EXPECT_EQ(notice.property("horizontalAlignment").toInt(), Qt::AlignHCenter);
    EXPECT_LE(notice.property("paintedWidth").toDouble(), 70);
    EXPECT_GE(notice.property("paintedWidth").toDouble(), 60);
    EXPECT_LE(notice.property("paintedHeight").toDouble(), 20);
}

TEST_F(LiveScreen, TheHelpButtonHasItsTitleAtTheLeftOnItsGround) {
    open();
    QQuickItem& title = testing::textOf(item("btnHelp"));
    EXPECT_EQ(placeOf(title).left(), 145);
    EXPECT_EQ(title.property("font").value<QFont>().family(), QStringLiteral("helvetica"));
    EXPECT_EQ(title.property("font").value<QFont>().pixelSize(), 14);
    EXPECT_EQ(title.property("color").value<QColor>(), QColor(Qt::white));
    EXPECT_EQ(testing::paintedRect(title).left(), 0);
    EXPECT_LE(placeOf(title).left() + title.property("paintedWidth").toDouble(), 180);
    std::set<std::string> pictures;
    for (const QQuickItem* inside : testing::itemsUnder(item("btnHelp")))
        pictures.insert(inside->property("source").toUrl().fileName().toStdString());
    EXPECT_EQ(pictures.count("orvo_scenario_details_button.png"), 1U);
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
        functions.insert(screen().strfunction.value_or(""));
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

TEST_F(LiveScreen, TheToolbarShowsItsPicturesAndItsTitle) {
    open();
    const auto pictureIn = [this](const char* button) {
        for (const QQuickItem* inside : testing::itemsUnder(item(button))) {
            const QString name = inside->property("source").toUrl().fileName();
            if (!name.isEmpty()) return name.toStdString();
        }
        return std::string("none");
    };
    EXPECT_EQ(pictureIn("Leftbtn"), "orvo_home_button_information.png");
    EXPECT_EQ(pictureIn("Rightbtn"), "orvo_home_button_history.png");
    showReading(kEarth);
    screen().pressRecord();
    settle();
    EXPECT_EQ(pictureIn("Rightbtn"), "orvo_home_button_save.png");
    EXPECT_EQ(pictureIn("btnRecord"), "orvo_home_button_record.png");
    std::set<std::string> titles;
    for (const QQuickItem* shown : testing::shownTexts(item("toolbar")))
        titles.insert(shown->property("text").toString().toStdString());
    EXPECT_EQ(titles, std::set<std::string>{"Kestrix"});
}

}  // namespace
}  // namespace kestrix::shell
