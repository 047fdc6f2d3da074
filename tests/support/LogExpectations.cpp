#include "tests/support/LogExpectations.h"

#include <gtest/gtest.h>

#include <QMessageLogContext>
#include <QString>

#include <algorithm>

namespace kestrix::testing {
namespace {

std::vector<std::string>& lines() {
    static std::vector<std::string> all;
    return all;
}

std::vector<std::string>& expected() {
    static std::vector<std::string> all;
    return all;
}

const char* levelName(QtMsgType type) {
    switch (type) {
        case QtDebugMsg:
            return "debug";
        case QtInfoMsg:
            return "info";
        case QtWarningMsg:
            return "warning";
        case QtCriticalMsg:
            return "critical";
        case QtFatalMsg:
            return "fatal";
    }
    return "unknown";
}

void handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const std::string text = message.toStdString();
    const std::string line =
        std::string(levelName(type)) + " " + (context.category ? context.category : "") + ": " + text;
    lines().push_back(line);
    if (type == QtDebugMsg || type == QtInfoMsg) return;
    const auto found = std::find_if(expected().begin(), expected().end(), [&](const std::string& wanted) {
        return text.find(wanted) != std::string::npos;
    });
    if (found == expected().end()) {
        ADD_FAILURE() << "unexpected in the log: " << line;
    } else {
        expected().erase(found);
    }
}

}  // namespace

void expectWarning(const std::string& text) {
    expected().push_back(text);
}

const std::vector<std::string>& logLines() {
    return lines();
}

void forgetLogLines() {
    lines().clear();
}

void startLog() {
    lines().clear();
    expected().clear();
    qInstallMessageHandler(handle);
}

void checkLog() {
    for (const std::string& text : expected()) ADD_FAILURE() << "never came in the log: " << text;
    expected().clear();
}

}  // namespace kestrix::testing
