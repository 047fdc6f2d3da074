// What stands where on the live screen, in which font, colour and picture.
#include <QFont>
#include <QFontInfo>

#include <set>

#include "tests/shell/LiveScreenFixture.h"
#include "tests/shell/Scenarios.h"

namespace kestrix::shell {
namespace {

class LiveScreenLayout : public LiveScreenFixture {};

struct Place {
    const char* name;
    QRectF place;
};

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

TEST_F(LiveScreenLayout, EverythingStandsAtItsPlaceAtEverySizeOfTheWindow) {
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

TEST_F(LiveScreenLayout, ALabelHasItsTextCentredInWhiteInItsFont) {
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

TEST_F(LiveScreenLayout, AHeaderStandsOnItsGroundAndEverythingElseOnThePictureBehindIt) {
    open();
    for (const FixedText& row : kFixedTexts) {
        const bool header = QString::fromLatin1(row.name).startsWith(QStringLiteral("header"));
        const auto ground = item(row.name).property("color").value<QColor>();
        EXPECT_EQ(ground, header ? QColor(69, 94, 149) : QColor(Qt::transparent)) << row.name;
    }
}

TEST_F(LiveScreenLayout, TheNoticeIsCentredAndAsLargeAsItsPlaceAllows) {
    open();
    const QQuickItem& notice = testing::textOf(item("lblNoCon"));
    EXPECT_EQ(notice.property("color").value<QColor>(), QColor(Qt::white));
    EXPECT_EQ(notice.property("horizontalAlignment").toInt(), Qt::AlignHCenter);
    EXPECT_LE(notice.property("paintedWidth").toDouble(), 70);
    EXPECT_GE(notice.property("paintedWidth").toDouble(), 60);
    EXPECT_LE(notice.property("paintedHeight").toDouble(), 20);
}

TEST_F(LiveScreenLayout, TheHelpButtonHasItsTitleAtTheLeftOnItsGround) {
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

TEST_F(LiveScreenLayout, TheToolbarShowsItsPicturesAndItsTitle) {
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
    EXPECT_EQ(titles, (std::set<std::string>{"Tester", "Connected"}));
}

}  // namespace
}  // namespace kestrix::shell
