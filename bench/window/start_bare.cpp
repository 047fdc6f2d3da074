// A bare Qt Quick program until its first picture: start_bare NANOSECONDS TEXTS HIDDEN_TEXTS RECTANGLES
// HIDDEN_RECTANGLES.
#include <QGuiApplication>

#include "bench/window/BareWindow.h"
#include "bench/window/StartFigures.h"
#include "bench/window/WindowWithoutDisplay.h"

namespace {

// The arguments behind the time, in order.
constexpr const char* kKinds[] = {"shownTexts", "hiddenTexts", "shownRectangles", "hiddenRectangles"};

}  // namespace

int main(int argc, char** argv) {
    using namespace kestrix::bench;
    if (argc != 6) return 2;
    drawWithoutDisplay();
    const QGuiApplication application(argc, argv);
    BareWindow::setFont();
    QVariantMap items;
    for (int kind = 0; kind < 4; ++kind)
        items.insert(QLatin1String(kKinds[kind]), static_cast<int>(numberOf(argv[kind + 2])));
    BareWindow window(QStringLiteral("BareScene"), items);
    reportFirstPicture(window, timeOf(numberOf(argv[1])));
    window.show();
    return QGuiApplication::exec();
}
