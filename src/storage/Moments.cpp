#include "storage/Moments.h"

#include <QDateTime>

#include <ctime>

namespace kestrix::storage {

Moment momentNow() {
    const QDateTime now = QDateTime::currentDateTime();
    timespec boot{};
    clock_gettime(CLOCK_BOOTTIME, &boot);
    return {.utc = now.toMSecsSinceEpoch(),
            .utcOffset = now.offsetFromUtc(),
            .sinceBoot = std::int64_t{boot.tv_sec} * 1000 + boot.tv_nsec / 1'000'000};
}

const char* programName() {
    return "kestrix " KESTRIX_VERSION;
}

}  // namespace kestrix::storage
