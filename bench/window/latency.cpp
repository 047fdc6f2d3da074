// From bytes at the channel to the picture that shows them, at a slow pace and in a flood, beside two texts
// of a bare window: latency [--quick].
#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "bench/window/BareSubject.h"
#include "bench/window/Child.h"
#include "bench/window/KestrixSubject.h"
#include "bench/window/Latency.h"
#include "bench/window/Presses.h"
#include "bench/window/WindowWithoutDisplay.h"

namespace {

using namespace kestrix::bench;
using namespace std::chrono_literals;

constexpr auto kSlowPeriod = 100ms;
constexpr auto kFloodPeriod = 1ms;
constexpr int kFloodValues = 10;

struct Lengths {
    int slowPushes;
    int floodPushes;
};
constexpr Lengths kFull{200, 5000};
constexpr Lengths kQuick{5, 600};

void print(const char* what, const std::vector<double>& times) {
    std::printf("    %-34s median %6.2f  p99 %6.2f  most %6.2f ms\n", what, median(times),
                percentile(times, 0.99), percentile(times, 1));
}

void measureSlow(Subject& subject, int pushes) {
    Latency slow(subject, kSlowPeriod, 1, pushes);
    slow.run();
    print("10 values/s: until shown", slow.untilShown());
}

void measureFlood(Subject& subject, int pushes) {
    Latency flood(subject, kFloodPeriod, kFloodValues, pushes);
    flood.run();
    print("10,000 values/s: until shown", flood.untilShown());
    print("    a 1 ms timer's lateness", flood.lateness());
    print("    wait of a posted event", flood.eventWaits());
    std::printf("        %.0f pictures/s\n", flood.picturesPerSecond());
}

int measureKestrix(const Lengths& lengths) {
    prepareApplication();
    KestrixSubject subject;
    measureSlow(subject, lengths.slowPushes);
    measureFlood(subject, lengths.floodPushes);
    std::printf("    the same, with presses of record\n");
    const Presses presses(subject);
    measureFlood(subject, lengths.floodPushes);
    print("    press of record: until listed", presses.untilListed());
    print("    press of record: until on disk", presses.untilKept());
    const bool all =
        !presses.untilKept().empty() && presses.untilListed().size() == presses.untilKept().size();
    if (!all) std::fprintf(stderr, "latency: a press got lost\n");
    return all ? 0 : 1;
}

int measureBare(const Lengths& lengths) {
    BareWindow::setFont();
    BareSubject subject;
    measureSlow(subject, lengths.slowPushes);
    measureFlood(subject, lengths.floodPushes);
    return 0;
}

// Each in a process of its own: the idle time is read once.
void measureInChild(const char* title, const char* who, const char* length, const char* idleTime) {
    setenv("QT_QPA_UPDATE_IDLE_TIME", idleTime, 1);
    std::printf("%s\n%s", title, outputOf("/proc/self/exe", {who, length}).c_str());
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    drawWithoutDisplay();
    if (argc == 3) {
        const Lengths& lengths = std::string_view(argv[2]) == "--quick" ? kQuick : kFull;
        const QGuiApplication application(argc, argv);
        return std::string_view(argv[1]) == "bare" ? measureBare(lengths) : measureKestrix(lengths);
    }
    const char* length = argc == 2 ? argv[1] : "--full";
    const TemporaryFolder folder;
    std::printf("== from bytes at the channel to the picture\n");
    measureInChild("bare window, the toolkit's own idle time of 5 ms", "bare", length, "5");
    measureInChild("bare window, no idle time", "bare", length, "0");
    measureInChild("kestrix (goals: 10 values/s: at most 1 ms; 10,000 values/s: p99 at most 2 ms)", "kestrix",
                   length, "0");
    return 0;
}
