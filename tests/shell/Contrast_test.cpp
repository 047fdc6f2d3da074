// Can it be read? Every text of the window against every pixel that it really stands on.
#include "tests/support/Contrast.h"

#include <map>

#include "tests/shell/Scenarios.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

using testing::contrast;

constexpr double kReadable = 4.5;
constexpr QRgb kLitTitle = qRgb(39, 121, 205);

class Contrast : public testing::WindowFixture {
  protected:
    // Text on ground, in the window's words: what stands on the display under each text, and how well it
    // stands out there at its worst pixel.
    std::map<std::string, double> readable() {
        std::vector<QQuickItem*> texts = testing::shownTexts(item("stage"));
        const QImage drawn = onDisplay();
        for (QQuickItem* text : texts) text->setOpacity(0);
        settle();
        const QImage ground = onDisplay();
        std::map<std::string, double> worst;
        for (QQuickItem* text : texts) {
            text->setOpacity(1);
            const QRect area = pixelsOf(seenPart(*text)) & ground.rect();
            const QRgb colour = text->property("color").value<QColor>().rgb();
            double least = 21;
            for (int y = area.top(); y <= area.bottom(); ++y) {
                for (int x = area.left(); x <= area.right(); ++x) {
                    if (drawn.pixel(x, y) != ground.pixel(x, y))  // ink
                        least = std::min(least, contrast(colour, ground.pixel(x, y)));
                }
            }
            const std::string name = text->parentItem()->objectName().toStdString() + " '" +
                                     text->property("text").toString().toStdString() + "'";
            if (area.isEmpty()) continue;
            worst[name] = least;
            EXPECT_TRUE(isCutOff(*text) || differ(drawn, ground, area)) << name << " cannot be seen";
        }
        settle();
        return worst;
    }

    // lit: the title that is lit.
    void expectReadable(const std::string& lit = "") {
        const auto found = readable();
        EXPECT_GE(found.size(), 13U);  // at least titles, headers and the toolbar's title
        for (const auto& [name, worst] : found) {
            if (!lit.empty() && name.rfind(lit + " ", 0) == 0) {
                EXPECT_NEAR(worst, contrast(qRgb(255, 255, 255), kLitTitle), 0.001) << name;
            } else {
                EXPECT_GE(worst, kReadable) << name;
            }
        }
    }

  private:
    bool isCutOff(QQuickItem& text) {
        return seenPart(text) != text.mapRectToItem(&item("points"), testing::paintedRect(text));
    }

    static bool differ(const QImage& one, const QImage& other, const QRect& where) {
        const QRect area = where & one.rect();
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                if (one.pixel(x, y) != other.pixel(x, y)) return true;
            }
        }
        return false;
    }

    // Of the glyphs, in points of the stage: well without what a list cuts off and what the bottom bar
    // covers.
    QRectF seenPart(QQuickItem& text) {
        QRectF part = text.mapRectToItem(&item("points"), testing::paintedRect(text));
        if (item("tableView").isAncestorOf(&text)) part &= placeOf("tableView").adjusted(0, 1, 0, -5);
        return part;
    }
};

// The one pair that is fixed from outside, and so the one that is not 4.5.
TEST_F(Contrast, WhiteOnALitTitleIsAHairBelowTheRest) {
    EXPECT_NEAR(contrast(qRgb(255, 255, 255), kLitTitle), 4.47, 0.005);
    EXPECT_GE(contrast(qRgb(255, 255, 255), kLitTitle), 4.4);
    EXPECT_LT(contrast(qRgb(255, 255, 255), kLitTitle), kReadable);
}

TEST_F(Contrast, WithoutALinkEverythingCanBeRead) {
    open();
    for (const QSize size : {QSize(320, 568), QSize(384, 682), QSize(960, 1706), QSize(160, 240)}) {
        resize(size);
        expectReadable();
    }
}

struct State {
    const char* scenario;
    const char* lit;
};
constexpr State kStates[] = {{kEarth, "fun2"},      {kInsulation, "fun1"}, {kLowOhm, "fun3"},
                             {kVoltage, "fun4"},    {kLoop, "fun5"},       {kRcd, "fun6"},
                             {kRcdSixRows, "fun6"}, {kRcdFourRows, "fun6"}};

TEST_F(Contrast, EveryFunctionAndItsRowsCanBeRead) {
    open();
    tester().appear();
    for (const State& state : kStates) {
        SCOPED_TRACE(state.lit);
        tester().play(state.scenario);
        screen().pressRecord();
        // At the least size, and with three pixels to the point, however many of them a screen has.
        for (const QSize size : {QSize(320, 568), QSize(960, 1706) / window().devicePixelRatio()}) {
            resize(size);
            expectReadable(state.lit);
        }
    }
}

TEST_F(Contrast, AHeldHelpButtonCanBeRead) {
    open();
    pressMouse("btnHelp");
    expectReadable();
}

TEST_F(Contrast, WhatTheKeyboardIsAtCanBeRead) {
    open();
    for (int stop = 0; stop < 6; ++stop) {
        pressKey(Qt::Key_Tab);
        SCOPED_TRACE(focused());
        expectReadable();
    }
}

}  // namespace
}  // namespace kestrix::shell
