#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/WindowFixture.h"

namespace kestrix::shell {

// What the live screen shows, in words.
class LiveScreenFixture : public testing::WindowFixture {
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

}  // namespace kestrix::shell
