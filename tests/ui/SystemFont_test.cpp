#include "ui/SystemFont.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QFontInfo>
#include <QGuiApplication>

namespace kestrix::ui {
namespace {

// The test program has installed it, as the application does.
TEST(SystemFont, TheFamiliesThatScreensNameAreTheMetricCompatibleOne) {
    for (const char* family : {"Arial", "helvetica", "Helvetica"})
        EXPECT_EQ(QFontInfo(QFont(QLatin1String(family))).family(), QStringLiteral("Liberation Sans"))
            << family;
}

TEST(SystemFont, ItIsTheApplicationsFontAndNotHinted) {
    EXPECT_EQ(QFontInfo(QGuiApplication::font()).family(), QStringLiteral("Liberation Sans"));
    EXPECT_EQ(QGuiApplication::font().hintingPreference(), QFont::PreferNoHinting);
}

}  // namespace
}  // namespace kestrix::ui
