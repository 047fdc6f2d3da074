// The colours of every label in every state: nothing but the lit title ever has one of its own.
#include <gtest/gtest.h>

#include <string>

#include "tests/live/DisplayFixture.h"
#include "tests/live/MainViewFixture.h"

namespace kestrix::live {
namespace {

const QColor kLitGround(39, 121, 205);
const QColor kHeaderGround(69, 94, 149);

std::string colourName(const QColor& color) {
    return color.alpha() == 0 ? "transparent" : color.name(QColor::HexArgb).toStdString();
}

// "D1Unit is #ffffff00 on transparent" for every label whose colours are not those that it should have.
std::string wrongColours(const MainViewController& screen, const QString& litTitle) {
    std::string wrong;
    for (const QObject* child : screen.children()) {
        const auto* label = qobject_cast<const ui::Label*>(child);
        if (label == nullptr) continue;
        QColor background = Qt::transparent;
        if (label->objectName() == litTitle) background = kLitGround;
        if (label->objectName().startsWith(QLatin1String("header"))) background = kHeaderGround;
        if (label->textColor() == QColor(Qt::white) &&
            colourName(label->backgroundColor()) == colourName(background))
            continue;
        wrong += label->objectName().toStdString() + " is " + colourName(label->textColor()) + " on " +
                 colourName(label->backgroundColor()) + "\n";
    }
    return wrong;
}

struct FunctionTitle {
    std::uint8_t function;
    const char* title;
};
constexpr FunctionTitle kTitleOfFunction[] = {{'1', "fun2"}, {'2', "fun1"}, {'3', "fun3"},
                                              {'4', "fun4"}, {'5', "fun5"}, {'6', "fun6"},
                                              {'7', "fun6"}, {0, ""},       {'8', ""}};

class ColoursTest : public MainViewFixture {};

TEST_F(ColoursTest, BeforeAnyRecordTheTextsAreWhiteAndNoTitleIsLit) {
    start();
    EXPECT_EQ(wrongColours(*screen_, {}), "");
    startConnected();
    EXPECT_EQ(wrongColours(*screen_, {}), "");
}

// Neither an alarm nor any other flag colours anything, and what was lit is dark behind the next record.
TEST_F(ColoursTest, OfEveryFunctionOnlyItsTitleIsLitWhateverTheFlags) {
    start();
    screen_->viewStatus(1);
    for (const FunctionTitle& row : kTitleOfFunction) {
        for (const std::uint8_t flag :
             {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{255}, std::uint8_t{0}}) {
            SCOPED_TRACE(std::to_string(row.function) + ", flags " + std::to_string(flag));
            protocol::MeterReading record = recordOf(row.function);
            record.bAlarmFlag = record.bWarnFlag = record.bBeepFlag = record.bHoldFlag = flag;
            record.bLockFlag = record.bCalFlag = record.bTestFlag = record.bTestRet = record.bTest = flag;
            receive(record);
            EXPECT_EQ(wrongColours(*screen_, QLatin1String(row.title)), "");
        }
    }
}

TEST_F(ColoursTest, BehindADisconnectNothingIsLit) {
    start();
    for (const FunctionTitle& row : kTitleOfFunction) {
        SCOPED_TRACE(row.function);
        screen_->viewStatus(1);
        protocol::MeterReading record = recordOf(row.function);
        record.bAlarmFlag = 1;
        receive(record);
        screen_->viewStatus(0);
        EXPECT_EQ(wrongColours(*screen_, {}), "");
        screen_->viewStatus(1);
        EXPECT_EQ(wrongColours(*screen_, {}), "");
    }
}

}  // namespace
}  // namespace kestrix::live
