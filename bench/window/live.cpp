// What the window costs while a tester sends at its own rate, while there is none, and what it holds after
// long: beside 40 changing texts of a bare window: live [--quick].
#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "bench/window/Application.h"
#include "bench/window/BareWindow.h"
#include "bench/window/Child.h"
#include "bench/window/Figures.h"
#include "bench/window/LongRun.h"
#include "bench/window/WindowWithoutDisplay.h"

namespace {

using namespace kestrix::bench;
using namespace std::chrono_literals;

constexpr auto kTesterPeriod = 250ms;
constexpr int kBareTexts = 40;

struct Lengths {
    std::chrono::milliseconds settling;  // before it is measured: the start is over, the tester is found
    std::chrono::milliseconds measured;
    int pictures;  // of the long run
};
constexpr Lengths kFull{2s, 20s, 10000};
constexpr Lengths kQuick{200ms, 2s, 500};

void runFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

// Per cent of one core.
void printCost(const QQuickWindow& window, const Lengths& lengths) {
    runFor(lengths.settling);
    int pictures = 0;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&pictures] { ++pictures; });
    const double before = processorSeconds();
    const Clock::time_point start = Clock::now();
    runFor(lengths.measured);
    const double time = milliseconds(Clock::now() - start) / 1000;
    std::printf("%5.2f %% of a core, %.1f pictures/s\n", (processorSeconds() - before) / time * 100,
                pictures / time);
}

int measureApplication(const std::vector<std::string>& uris, const Lengths& lengths) {
    prepareApplication();
    Application application(uris);
    printCost(application.window(), lengths);
    return 0;
}

int measureBare(const Lengths& lengths) {
    BareWindow::setFont();
    BareWindow window(QStringLiteral("ChangingTexts"), {{QStringLiteral("texts"), kBareTexts}});
    window.show();
    const std::vector<QQuickItem*> texts = window.items(QStringLiteral("text"));
    int value = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&texts, &value] {
        for (QQuickItem* text : texts) text->setProperty("text", QString::number(++value / 10.0, 'f', 1));
    });
    timer.start(kTesterPeriod);
    printCost(window, lengths);
    return 0;
}

int measure(std::string_view who, const Lengths& lengths) {
    if (who == "bare") return measureBare(lengths);
    if (who == "live") return measureApplication({"simulator:house"}, lengths);
    if (who == "alone") return measureApplication({}, lengths);
    prepareApplication();
    return longRun(lengths.pictures);
}

void measureInChild(const char* title, const char* who, const char* length) {
    std::printf("%-46s %s", title, outputOf("/proc/self/exe", {who, length}).c_str());
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    drawWithoutDisplay();
    if (argc == 3) {
        const QGuiApplication application(argc, argv);
        return measure(argv[1], std::string_view(argv[2]) == "--quick" ? kQuick : kFull);
    }
    const char* length = argc == 2 ? argv[1] : "--full";
    const TemporaryFolder folder;
    std::printf("== live, each for a while in a process of its own\n");
    measureInChild("bare window, 40 texts changed 4 times a second", "bare", length);
    measureInChild("kestrix, a tester at its own rate (goal: 1)  ", "live", length);
    measureInChild("kestrix, no tester (goal: 0)", "alone", length);
    measureInChild("kestrix, long run", "long", length);
    return 0;
}
