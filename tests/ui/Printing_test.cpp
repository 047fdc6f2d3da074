#include "tests/support/Printing.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QRectF>
#include <QStringList>
#include <QUrl>

#include "ui/ScreenId.h"

namespace kestrix::testing {
namespace {

using ::testing::PrintToString;

TEST(Printing, WhatATestSaysOfAValueIsWhatAPersonWouldSay) {
    EXPECT_EQ(PrintToString(QColor(39, 121, 205)), "#2779cd");
    EXPECT_EQ(PrintToString(QColor(39, 121, 205, 51)), "#2779cd at 20 %");
    EXPECT_EQ(PrintToString(QPoint(1, -2)), "(1, -2)");
    EXPECT_EQ(PrintToString(QPointF(1.5, 2)), "(1.5, 2)");
    EXPECT_EQ(PrintToString(QSize(320, 44)), "320 x 44");
    EXPECT_EQ(PrintToString(QSizeF(320, 44.5)), "320 x 44.5");
    EXPECT_EQ(PrintToString(QRect(1, 2, 320, 44)), "320 x 44 at (1, 2)");
    EXPECT_EQ(PrintToString(QRectF(0, 231, 320, 20.5)), "320 x 20.5 at (0, 231)");
    EXPECT_EQ(PrintToString(QStringLiteral("0.2Ω")), "\"0.2Ω\"");
    EXPECT_EQ(PrintToString(QStringList{"a", "b"}), "{ \"a\", \"b\" }");
    EXPECT_EQ(PrintToString(QByteArray("one\x01")), "\"one%01\"");
    EXPECT_EQ(PrintToString(QUrl(QStringLiteral("qrc:/a.qml"))), "qrc:/a.qml");
    EXPECT_EQ(PrintToString(ui::ScreenId::SaveData), "SaveData");
}

}  // namespace
}  // namespace kestrix::testing
