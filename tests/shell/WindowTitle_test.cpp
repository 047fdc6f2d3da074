#include "shell/WindowTitle.h"

#include <gtest/gtest.h>

namespace kestrix::shell {
namespace {

TEST(WindowTitle, TellsTheStateTheTesterAndThatItIsSimulated) {
    const QString name = QStringLiteral("Tester 7");
    EXPECT_EQ(windowTitle(0, {}, false), QStringLiteral("Not connected - Kestrix"));
    EXPECT_EQ(windowTitle(1, name, false), QStringLiteral("Connected to Tester 7 - Kestrix"));
    EXPECT_EQ(windowTitle(1, {}, false), QStringLiteral("Connected - Kestrix"));
    EXPECT_EQ(windowTitle(0, name, false), QStringLiteral("Not connected - Kestrix"));
    EXPECT_EQ(windowTitle(0, {}, true), QStringLiteral("Not connected (simulated) - Kestrix"));
    EXPECT_EQ(windowTitle(1, name, true), QStringLiteral("Connected to Tester 7 (simulated) - Kestrix"));
}

TEST(WindowTitle, ATesterCannotMakeItUnreadable) {
    EXPECT_EQ(windowTitle(1, QStringLiteral("a\nb\x1b[2Jc\t\u202E d"), false),
              QStringLiteral("Connected to a b [2Jc d - Kestrix"));
    const QString title = windowTitle(1, QString(500, u'x'), false);
    EXPECT_LT(title.size(), 70);
    EXPECT_TRUE(title.endsWith(QStringLiteral("… - Kestrix")));
    EXPECT_EQ(windowTitle(1, QStringLiteral(" \n "), false), QStringLiteral("Connected - Kestrix"));
}

}  // namespace
}  // namespace kestrix::shell
