#include "live/MeterDisplay.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/display/Groups.h"
#include "tests/live/DisplayFixture.h"

namespace kestrix::live {
namespace {

const QColor kLit(39, 121, 205);

class MeterDisplayTest : public DisplayFixture {
  protected:
    // The titles that are lit, by name.
    std::string lit() const {
        std::string names;
        for (const ui::Label* title : {&display_.fun1, &display_.fun2, &display_.fun3, &display_.fun4,
                                       &display_.fun5, &display_.fun6}) {
            if (title->backgroundColor() == kLit) {
                names += title->objectName().toStdString();
            } else {
                EXPECT_EQ(title->backgroundColor().alpha(), 0);
            }
        }
        return names;
    }
    void showAll() {
        display_.setHiddenLable(display::kReadings, false);
        for (std::int32_t group = 3; group <= 5; ++group) display_.setHiddenLable(group, false);
    }
};

TEST_F(MeterDisplayTest, EachStyleHasItsBackgroundAndItsFont) {
    struct Row {
        std::int32_t style;
        QColor background;
        int size;
    };
    const Row rows[] = {{0, QColor(0, 0, 0, 0), 14},
                        {1, QColor(0, 0, 0, 0), 12},
                        {2, QColor(69, 94, 149), 8},
                        {3, QColor(0, 0, 0, 0), 20}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.style);
        ui::Label& label = display_.D1Value;
        label.setBackgroundColor(Qt::red);
        label.setTextColor(Qt::red);
        label.setAlignment(Qt::AlignLeft);
        display_.setUILabelView(label, row.style, QStringLiteral("V"));
        EXPECT_EQ(label.backgroundColor(), row.background);
        EXPECT_EQ(label.fontFamily(), QStringLiteral("Arial"));
        EXPECT_EQ(label.fontSize(), row.size);
        EXPECT_EQ(label.text(), QStringLiteral("V"));
        EXPECT_EQ(label.textColor(), QColor(Qt::white));
        EXPECT_EQ(label.alignment(), Qt::AlignHCenter);
    }
}

TEST_F(MeterDisplayTest, AStyleOutsideZeroToThreeLeavesBackgroundAndFontAndSetsTheRest) {
    for (const std::int32_t style : {-1, 4, 99, std::numeric_limits<std::int32_t>::min()}) {
        SCOPED_TRACE(style);
        ui::Label& label = display_.D1Value;
        label.setBackgroundColor(Qt::red);
        label.setFont(QStringLiteral("Courier"), 33);
        label.setTextColor(Qt::red);
        label.setAlignment(Qt::AlignLeft);
        display_.setUILabelView(label, style, QStringLiteral("V"));
        EXPECT_EQ(label.backgroundColor(), QColor(Qt::red));
        EXPECT_EQ(label.fontFamily(), QStringLiteral("Courier"));
        EXPECT_EQ(label.fontSize(), 33);
        EXPECT_EQ(label.text(), QStringLiteral("V"));
        EXPECT_EQ(label.textColor(), QColor(Qt::white));
        EXPECT_EQ(label.alignment(), Qt::AlignHCenter);
    }
}

TEST_F(MeterDisplayTest, ANullTextBecomesTheEmptyOne) {
    display_.D1Value.setText(QStringLiteral("old"));
    display_.setUILabelView(display_.D1Value, 3, {});
    EXPECT_TRUE(display_.D1Value.text().isEmpty());
    EXPECT_FALSE(display_.D1Value.text().isNull());
}

TEST_F(MeterDisplayTest, EveryLabelHasItsFixedTextAndStyle) {
    struct Row {
        const char* name;
        const char* text;
        int size;
    };
    constexpr Row rows[] = {
        {"D1Value", "", 20},        {"D1Unit", "", 20},         {"D2Value", "", 20},
        {"D2Unit", "", 20},         {"RCD1Row", "x1/2", 14},    {"RCD1Angle", "0° :", 14},
        {"RCD1Value", " ", 14},     {"RCD1Unit", "ms", 14},     {"RCD2Row", "x1/2", 14},
        {"RCD2Angle", "180°:", 14}, {"RCD2Value", " ", 14},     {"RCD2Unit", "ms", 14},
        {"RCD3Row", "x1 ", 14},     {"RCD3Angle", "0° :", 14},  {"RCD3Value", " ", 14},
        {"RCD3Unit", "ms", 14},     {"RCD4Row", "x1 ", 14},     {"RCD4Angle", "180°:", 14},
        {"RCD4Value", " ", 14},     {"RCD4Unit", "ms", 14},     {"RCD5Row", "x5 ", 14},
        {"RCD5Angle", "0° :", 14},  {"RCD5Value", " ", 14},     {"RCD5Unit", "ms", 14},
        {"RCD6Row", "x5 ", 14},     {"RCD6Angle", "180°:", 14}, {"RCD6Value", " ", 14},
        {"RCD6Unit", "ms", 14},     {"fun1", "INSULATION", 12}, {"fun2", "RE", 12},
        {"fun3", "LOW OHM", 12},    {"fun4", "V", 12},          {"fun5", "LOOP/PFC", 12},
        {"fun6", "RCD", 12},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const ui::Label* label = display_.label(QLatin1String(row.name));
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->text().toStdString(), row.text);
        EXPECT_EQ(label->fontSize(), row.size);
        EXPECT_EQ(label->fontFamily(), QStringLiteral("Arial"));
        EXPECT_EQ(label->textColor(), QColor(Qt::white));
        EXPECT_EQ(label->alignment(), Qt::AlignHCenter);
        EXPECT_EQ(label->backgroundColor().alpha(), 0);
    }
}

// The labels of every function and state say what the value says, and no more is told to the view than that.
TEST_F(MeterDisplayTest, TheLabelsShowTheValueAfterEveryRecord) {
    for (const std::uint8_t function : {'1', '2', '3', '4', '5', '6', '7', '7', '7', '9', '\0'}) {
        protocol::MeterReading record = function == '7' ? sequenceRecord(1) : recordOf(function);
        record.bAlarmFlag = function % 2;
        receive(record);
        const display::Display& value = display_.display();
        const auto expectReading = [](const ui::Label& text, const ui::Label& unit,
                                      const display::Reading& reading) {
            EXPECT_EQ(text.text().toStdString(), reading.value);
            EXPECT_EQ(unit.text().toStdString(), reading.unit);
            EXPECT_EQ(text.hidden(), reading.hidden);
            EXPECT_EQ(unit.hidden(), reading.hidden);
        };
        expectReading(display_.D1Value, display_.D1Unit, value.first);
        expectReading(display_.D2Value, display_.D2Unit, value.second);
        for (std::size_t i = 0; i < value.rcdRows.size(); ++i) {
            const RcdRow& labels = display_.rcdRows[i];
            EXPECT_EQ(labels.Value.text().toStdString(), value.rcdRows[i].value);
            EXPECT_EQ(labels.Value.hidden(), value.rcdRows[i].valueHidden);
            for (const ui::Label* label : {&labels.Row, &labels.Angle, &labels.Unit})
                EXPECT_EQ(label->hidden(), value.rcdRows[i].hidden);
        }
        EXPECT_EQ(display_.blueImage.hidden(), !value.warning);
    }
}

TEST_F(MeterDisplayTest, RecordFlagAndSuccessAreNotLookedAt) {
    protocol::MeterReading record = recordOf('2');
    display_.didReceive3820Data(record, false);
    const display::Display before = display_.display();
    EXPECT_EQ(display_.D1Value.text(), QStringLiteral("1.23"));
    record.bRecord = true;
    display_.didReceive3820Data(record, true);
    EXPECT_EQ(display_.display(), before);
}

TEST_F(MeterDisplayTest, TheCountersAreSharedByAllScreensOfTheProcess) {
    receiveRunning(2);
    BuiltDisplay other;
    EXPECT_EQ(other.display().counters.rcdStep, 2);
    other.didReceive3820Data(sequenceRecord(1, "20"), true);
    EXPECT_EQ(MeterDisplay::counters.rcdStep, 3);
    EXPECT_EQ(MeterDisplay::counters.showMode, 3);
    EXPECT_EQ(other.rcdRows[0].Value.text(), QStringLiteral("20"));
    receive(sequenceRecord(1, "21", 2));
    EXPECT_EQ(MeterDisplay::counters.rcdStep, 4);
    EXPECT_EQ(MeterDisplay::counters.lastSubFuncF2, 2);
}

TEST_F(MeterDisplayTest, OneRowOfTheResultsIsMadeOfItsThreeTexts) {
    EXPECT_EQ(display_.getRCDResult("18", "x1 ", "180°:"), "x1  180°:18ms,");
    EXPECT_EQ(display_.getRCDResult("----", "x1/2", "0° :"), "x1/2 0° :ms,");
}

TEST_F(MeterDisplayTest, EachGroupHidesAndShowsItsLabels) {
    for (const display::GroupParts& row : display::kGroupParts) {
        SCOPED_TRACE(row.group);
        showAll();
        display_.setHiddenLable(row.group, true);
        EXPECT_EQ(shownLabels(display_), row.hidden);
        for (std::int32_t group = 1; group <= 5; ++group) display_.setHiddenLable(group, true);
        EXPECT_EQ(shownLabels(display_), "");
        display_.setHiddenLable(row.group, false);
        EXPECT_EQ(shownLabels(display_), row.shown);
    }
}

TEST_F(MeterDisplayTest, Group2AndHiddenFalseShowsTheFirstReadingAndHidesTheSecond) {
    showAll();
    display_.setHiddenLable(2, false);
    EXPECT_EQ(shownLabels(display_), "D1 rows1-4 rows5-6 values1-6");
}

TEST_F(MeterDisplayTest, AnyOtherGroupDoesNothing) {
    for (const std::int32_t group : {0, 6, -1, 100}) {
        showAll();
        display_.setHiddenLable(group, true);
        EXPECT_EQ(shownLabels(display_), "D1 D2 rows1-4 rows5-6 values1-6") << group;
        for (std::int32_t known = 1; known <= 5; ++known) display_.setHiddenLable(known, true);
        display_.setHiddenLable(group, false);
        EXPECT_EQ(shownLabels(display_), "") << group;
    }
}

TEST_F(MeterDisplayTest, EachCodeLightsItsTitleOnly) {
    struct Row {
        std::int32_t code;
        const char* title;
    };
    constexpr Row rows[] = {{'1', "fun2"}, {'2', "fun1"}, {'3', "fun3"}, {'4', "fun4"},
                            {'5', "fun5"}, {'6', "fun6"}, {'7', "fun6"}};
    for (const Row& row : rows) {
        display_.setTitleColor(row.code);
        EXPECT_EQ(lit(), row.title) << row.code;
        ASSERT_NE(display_.litTitle(), nullptr);
        EXPECT_EQ(display_.litTitle()->objectName().toStdString(), row.title);
    }
}

TEST_F(MeterDisplayTest, Code7AndCode6LightTheSameTitle) {
    display_.setTitleColor('6');
    const std::string title = lit();
    display_.setTitleColor('7');
    EXPECT_EQ(lit(), title);
    EXPECT_EQ(title, "fun6");
}

TEST_F(MeterDisplayTest, SetTitleColorWith0OrWithACodeAbove7UnlightsAllSixTitles) {
    for (const std::int32_t code : {0, '0' + 0, '8' + 0, 1, 7, 255, -1}) {
        display_.setTitleColor('3');
        EXPECT_EQ(lit(), "fun3");
        display_.setTitleColor(code);
        EXPECT_EQ(lit(), "") << code;
        EXPECT_EQ(display_.litTitle(), nullptr);
    }
}

TEST_F(MeterDisplayTest, ClearingEmptiesTheTripTimesToABlankAndTheResultsOnly) {
    receiveRunning(3);
    EXPECT_NE(tripTimes(display_), kNoTripTimes);
    display_.ClearRCDValue();
    EXPECT_EQ(tripTimes(display_), kNoTripTimes);
    receive(recordOf('2'));
    const std::string parameters = display_.parameters();
    EXPECT_FALSE(parameters.empty());
    display_.ClearData();
    EXPECT_EQ(display_.results(), "");
    EXPECT_EQ(display_.parameters(), parameters);
}

}  // namespace
}  // namespace kestrix::live
