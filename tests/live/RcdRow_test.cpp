#include "live/RcdRow.h"

#include <gtest/gtest.h>

#include <string>

#include "ui/Screen.h"

namespace kestrix::live {
namespace {

TEST(RcdRow, NamesItsLabelsByItsNumber) {
    ui::Screen screen(ui::ScreenId::MainView);
    const RcdRow first(screen, 1);
    const RcdRow sixth(screen, 6);
    EXPECT_EQ(screen.label(QStringLiteral("RCD1Row")), &first.Row);
    EXPECT_EQ(screen.label(QStringLiteral("RCD1Angle")), &first.Angle);
    EXPECT_EQ(screen.label(QStringLiteral("RCD1Value")), &first.Value);
    EXPECT_EQ(screen.label(QStringLiteral("RCD1Unit")), &first.Unit);
    EXPECT_EQ(screen.label(QStringLiteral("RCD6Value")), &sixth.Value);
}

}  // namespace
}  // namespace kestrix::live
