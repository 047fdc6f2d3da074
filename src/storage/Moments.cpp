#include "storage/Moments.h"

#include <ctime>

namespace kestrix::storage {

namespace {

std::int64_t milliseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1'000'000;
}

}  // namespace

Moment momentNow() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    timespec boot{};
    clock_gettime(CLOCK_BOOTTIME, &boot);
    tzset();  // whoever travels may have changed it since
    tm local{};
    localtime_r(&now.tv_sec, &local);
    return {.utc = milliseconds(now),
            .utcOffset = static_cast<std::int32_t>(local.tm_gmtoff),
            .sinceBoot = milliseconds(boot)};
}

const char* programName() {
    return "kestrix " KESTRIX_VERSION;
}

}  // namespace kestrix::storage
