#include "platform/Log.h"

#include <gtest/gtest.h>

#include <QMessageLogContext>
#include <QString>

namespace kestrix::platform {
namespace {

QString formatted(QtMsgType type, const char* category, const QString& message) {
    return qFormatLogMessage(type, QMessageLogContext("file.cpp", 1, "function", category), message);
}

TEST(Log, ALineIsAsGivenWithLevelAndCategoryInFront) {
    installLogFormat();
    EXPECT_EQ(formatted(QtInfoMsg, "kestrix.link", QStringLiteral("====连接====")),
              QStringLiteral("info kestrix.link: ====连接===="));
    EXPECT_EQ(formatted(QtWarningMsg, "kestrix.link", QStringLiteral("write error")),
              QStringLiteral("warning kestrix.link: write error"));
}

}  // namespace
}  // namespace kestrix::platform
