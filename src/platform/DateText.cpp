#include "platform/DateText.h"

#include <sys/stat.h>
#include <unicode/localpointer.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/ucal.h>
#include <unicode/udat.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace kestrix::platform {
namespace {

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

// The week rules are the locale's; its digits and calendar are not: what is stored is read by others.
std::string withLatinDigits(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale = name.empty() ? icu::Locale::getDefault() : icu::Locale(name.c_str());
    locale.setKeywordValue("calendar", "gregorian", status);
    locale.setKeywordValue("numbers", "latn", status);
    return locale.getName();
}

// Downwards, so that a moment before 1970 does not show a second that has not come.
UDate dateOf(std::chrono::system_clock::time_point moment) {
    return static_cast<UDate>(
        std::chrono::floor<std::chrono::milliseconds>(moment.time_since_epoch()).count());
}

icu::UnicodeString zoneOfMachine() {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString name;
    return zone ? zone->getID(name) : name;
}

}  // namespace

std::string machineZoneState(const char* link) {
    const char* const chosen = std::getenv("TZ");  // NOLINT(concurrency-mt-unsafe): one thread
    std::string state = chosen != nullptr ? chosen : "";
    struct stat target {};
    if (::stat(link, &target) == 0) {
        for (const auto part :
             {static_cast<std::int64_t>(target.st_dev), static_cast<std::int64_t>(target.st_ino),
              static_cast<std::int64_t>(target.st_mtim.tv_sec)})
            state += ' ' + std::to_string(part);
    }
    return state;
}

struct DateText::Format {
    icu::UnicodeString pattern;
    std::string locale;
    icu::UnicodeString zone;
    icu::LocalUDateFormatPointer pointer;
    std::string machineZone;  // as it was when the format was opened
    bool opened = false;

    // Reads the locale's data, which takes as long as some of the start: not before the first text.
    UDateFormat* open() {
        if (zone.isEmpty()) {
            const std::string now = machineZoneState();
            if (now != std::exchange(machineZone, now)) opened = false;
        }
        if (std::exchange(opened, true)) return pointer.getAlias();
        const icu::UnicodeString shown = zone.isEmpty() ? zoneOfMachine() : zone;
        UErrorCode status = U_ZERO_ERROR;
        pointer.adoptInstead(udat_open(UDAT_PATTERN, UDAT_PATTERN, withLatinDigits(locale).c_str(),
                                       shown.getBuffer(), shown.length(), pattern.getBuffer(),
                                       pattern.length(), &status));
        return pointer.getAlias();
    }
};

DateText::DateText(std::string_view pattern, std::string_view locale, std::string_view zone)
    : format_(std::make_unique<Format>()) {
    format_->pattern = unicode(pattern);
    format_->locale = locale;
    format_->zone = unicode(zone);
}

DateText::DateText(DateText&&) noexcept = default;
DateText& DateText::operator=(DateText&&) noexcept = default;
DateText::~DateText() = default;

std::int32_t DateText::utcOffset(std::chrono::system_clock::time_point moment) const {
    UDateFormat* const format = format_->open();
    if (format == nullptr) return 0;
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUCalendarPointer calendar(ucal_clone(udat_getCalendar(format), &status));
    if (U_FAILURE(status)) return 0;
    ucal_setMillis(calendar.getAlias(), dateOf(moment), &status);
    const int32_t offset = ucal_get(calendar.getAlias(), UCAL_ZONE_OFFSET, &status) +
                           ucal_get(calendar.getAlias(), UCAL_DST_OFFSET, &status);
    return U_FAILURE(status) ? 0 : offset / 1000;
}

std::string DateText::text(std::chrono::system_clock::time_point moment) const {
    UDateFormat* const format = format_->open();
    if (format == nullptr) return {};
    const UDate date = dateOf(moment);
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = udat_format(format, date, nullptr, 0, nullptr, &status);
    if (status != U_BUFFER_OVERFLOW_ERROR) return {};
    status = U_ZERO_ERROR;
    icu::UnicodeString formatted;
    udat_format(format, date, formatted.getBuffer(length), length, nullptr, &status);
    formatted.releaseBuffer(length);
    std::string result;
    return U_FAILURE(status) ? result : formatted.toUTF8String(result);
}

}  // namespace kestrix::platform
