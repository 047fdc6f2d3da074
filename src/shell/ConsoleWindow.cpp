#include "shell/ConsoleWindow.h"

#include <QCoreApplication>

namespace kestrix::shell {

ConsoleWindow::ConsoleWindow(ConsoleApplication& application)
    : StageWindow(QUrl(QStringLiteral("qrc:/qt/qml/Kestrix/Shell/ConsoleRoot.qml"))),
      application_(application) {
    takePlace({.position = {}, .size = kSize});
    setTitle(QCoreApplication::translate("ConsoleWindow", "Link console - Kestrix"));
}

bool ConsoleWindow::load() {
    return loadViews({
        {QStringLiteral("search"), QVariant::fromValue(&application_.search())},
        {QStringLiteral("screens"), QVariant::fromValue(&application_.screens())},
    });
}

}  // namespace kestrix::shell
