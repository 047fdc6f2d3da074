// The window's labels, the words for the screen reader, the terminal and --screen all show one value:
// whatever comes in whatever order, none of them says anything else.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "apps/kestrix-cli/ScreenJson.h"
#include "apps/kestrix-cli/TerminalDisplay.h"
#include "tests/live/MainViewFixture.h"

namespace kestrix::live {
namespace {

constexpr std::uint8_t kAnyFunction[] = {'1', '2', '3', '4', '5', '6', '7', 0, '8', 255};

class OneDisplayTest : public MainViewFixture {
  protected:
    OneDisplayTest() {
        start();
        display::linkStateChanged(value_, 0);
    }

    void receiveBoth(const protocol::MeterReading& record) {
        latest_ = record;
        receive(record);
        display::recordCame(value_, record);
    }
    void linkStateOfBoth(std::int32_t state) {
        screen_->viewStatus(state);
        display::linkStateChanged(value_, state);
    }

    void expectAgreement() const {
        ASSERT_EQ(screen_->display(), value_);
        expectLabels();
        EXPECT_EQ(screen_->spokenReading()->text().toStdString(), inWords(value_).toStdString());
        expectTerminal();
    }

    // --screen has every label that stands for the value: the window's say the same, letter by letter.
    void expectLabels() const {
        std::string text;
        cli::appendScreenJson(text, value_);
        const nlohmann::json screen = nlohmann::json::parse(text);
        for (const auto& [name, label] : screen.at("labels").items()) {
            const ui::Label* shown = screen_->label(QString::fromStdString(name));
            ASSERT_NE(shown, nullptr) << name;
            EXPECT_EQ(shown->text().toStdString(), label.at("text")) << name;
            EXPECT_EQ(shown->hidden(), label.at("hidden")) << name;
        }
        EXPECT_EQ(screen_->blueImage.hidden(), screen.at("blueImage").at("hidden"));
        const ui::Label* lit = screen_->litTitle();
        EXPECT_EQ(screen.at("title"),
                  lit == nullptr ? nlohmann::json() : nlohmann::json(lit->objectName().toStdString()));
        EXPECT_EQ(screen_->lblNoCon.hidden(), value_.link == display::LinkState::Connected);
    }

    // The terminal shows more, but of what the window shows neither more nor less.
    void expectTerminal() const {
        std::string all;
        for (const std::string& line :
             cli::renderDisplay({"", value_, latest_, 0, std::nullopt, 0, ""}, {false, 80}))
            all += line + "\n";
        const auto has = [&all](const std::string& text) { return all.find(text) != std::string::npos; };
        const ui::Label* lit = screen_->litTitle();
        EXPECT_EQ(has("["), lit != nullptr) << all;
        if (lit != nullptr) {
            EXPECT_TRUE(has("[" + lit->text().toStdString() + "]")) << all;
        }
        EXPECT_EQ(has("Not Connected"), !screen_->lblNoCon.hidden()) << all;
        EXPECT_EQ(has("ALARM"), !screen_->blueImage.hidden()) << all;
        if (!display::showsReading(value_)) return;
        EXPECT_EQ(has("45.6 V"), !screen_->D2Value.hidden()) << all;
        if (!screen_->D2Value.hidden()) return;
        for (std::size_t i = 0; i < screen_->rcdRows.size(); ++i) {
            const RcdRow& row = screen_->rcdRows[i];
            const std::string value = row.Value.text().toStdString();
            if (display::showsTripTime(value_, i)) {
                EXPECT_TRUE(has(value + " ms")) << all;
            }
        }
        EXPECT_EQ(has("x1/2"), !screen_->rcdRows[0].Row.hidden()) << all;
        EXPECT_EQ(has("x5"), !screen_->rcdRows[5].Row.hidden()) << all;
    }

    display::Display value_;  // beside the screen, by the steps alone
    protocol::MeterReading latest_;
};

TEST_F(OneDisplayTest, EveryFunctionBehindEveryOtherInEveryStateOfTheLink) {
    for (const std::int32_t state : {0, 1, 2}) {
        for (const std::uint8_t first : kAnyFunction) {
            for (const std::uint8_t second : kAnyFunction) {
                SCOPED_TRACE(std::to_string(first) + ", " + std::to_string(second) + " in state " +
                             std::to_string(state));
                linkStateOfBoth(state);
                receiveBoth(recordOf(first));
                receiveBoth(recordOf(second));
                ASSERT_NO_FATAL_FAILURE(expectAgreement());
            }
        }
    }
}

TEST_F(OneDisplayTest, AnyRecordsAndStatesInAnyOrder) {
    std::mt19937 random(20240603);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    for (int step = 0; step < 1000; ++step) {
        SCOPED_TRACE(step);
        if (below(40) == 0) {
            linkStateOfBoth(static_cast<std::int32_t>(below(3)));
        } else {
            // Long runs of one function, so that RCD sequences come to their end.
            const std::uint8_t function = below(12) == 0 ? kAnyFunction[below(std::size(kAnyFunction))] : '7';
            protocol::MeterReading record = recordOf(function);
            record.bAlarmFlag = below(4) == 0 ? 1 : 0;
            record.bTest = below(30) == 0 ? 0 : 1;
            record.iSubFuncF2 = below(25) == 0 ? 2 : 0;
            record.strValue1 = below(10) == 0 ? "----" : std::to_string(100 + below(900));
            receiveBoth(record);
        }
        ASSERT_NO_FATAL_FAILURE(expectAgreement());
        if (HasFailure()) return;
    }
}

}  // namespace
}  // namespace kestrix::live
