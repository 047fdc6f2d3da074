// Plays the built-in tester flat out through the whole road, from its source to the records, and shows that
// the memory stands still: soak [FRAMES, 1000000]. Fails when it grows by more than a mebibyte after the
// first hundredth.
#include <QCoreApplication>
#include <QTemporaryDir>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "apps/common/SimulatorSource.h"
#include "link/BluetoothConnect.h"
#include "link/FrameListener.h"
#include "platform/AccessorySources.h"

namespace {

using namespace kestrix;

constexpr long kMostGrowthKib = 1024;

// "VmRSS" or "VmHWM" (the peak), in KiB.
long memoryKib(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(name + ":", 0) == 0) return std::strtol(line.c_str() + name.size() + 1, nullptr, 10);
    }
    return 0;
}

class Counter final : public link::BusinessCommunicationDelegate {
  public:
    explicit Counter(std::uint64_t frames) : frames_(frames) {}
    void didReceive3820Data(const protocol::MeterReading& record, bool) override {
        if (record.iFunction == 0) ++notUnderstood;
        if (++records == frames_ / 100) peakBefore = memoryKib("VmHWM");
        if (records == frames_) QCoreApplication::quit();
    }
    std::uint64_t records = 0;
    std::uint64_t notUnderstood = 0;
    long peakBefore = 0;

  private:
    std::uint64_t frames_;
};

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const bool given = argc > 1 && argv[1][0] != '-';
    const std::uint64_t frames = given ? std::strtoull(argv[1], nullptr, 10) : 1'000'000;
    if (frames < 100) {
        std::fprintf(stderr, "soak: at least 100 frames\n");
        return 2;
    }
    const QTemporaryDir folder;
    platform::QtScheduler scheduler;
    platform::UserDefaults defaults(folder.filePath(QStringLiteral("kestrix.ini")));
    platform::AccessoryManager manager;
    link::BluetoothConnect connect(manager, defaults);
    Counter counter(frames);
    connect.initBlue();
    connect.setDelegate(&counter);
    auto made = platform::makeAccessorySource("simulator:?speed=max", scheduler, app::simulatorSource,
                                              link::makeFrameListener);
    if (!made.source) {
        std::fprintf(stderr, "soak: %s\n", made.problem.c_str());
        return 1;
    }
    const auto start = std::chrono::steady_clock::now();
    manager.addSource(std::move(made.source));
    QCoreApplication::exec();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;

    const long peakAfter = memoryKib("VmHWM");
    const auto count = static_cast<unsigned long long>(counter.records);
    std::printf("%llu frames in %.1f s (%.0f ns a frame, simulator included), %llu not understood\n", count,
                time.count(), time.count() * 1e9 / static_cast<double>(counter.records),
                static_cast<unsigned long long>(counter.notUnderstood));
    std::printf("peak memory: %ld KiB after the first hundredth, %ld KiB at the end\n", counter.peakBefore,
                peakAfter);
    return peakAfter - counter.peakBefore <= kMostGrowthKib ? 0 : 1;
}
