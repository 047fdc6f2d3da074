#include "platform/DateText.h"

#include <unicode/localpointer.h>
#include <unicode/udat.h>
#include <unicode/unistr.h>

#include <utility>

namespace kestrix::platform {
namespace {

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

}  // namespace

struct DateText::Format {
    icu::UnicodeString pattern;
    std::string locale;
    icu::UnicodeString zone;
    icu::LocalUDateFormatPointer pointer;
    bool opened = false;

    // Reads the locale's data, which takes as long as some of the start: not before the first text.
    UDateFormat* open() {
        if (std::exchange(opened, true)) return pointer.getAlias();
        UErrorCode status = U_ZERO_ERROR;
        pointer.adoptInstead(udat_open(UDAT_PATTERN, UDAT_PATTERN, locale.empty() ? nullptr : locale.c_str(),
                                       zone.isEmpty() ? nullptr : zone.getBuffer(), zone.length(),
                                       pattern.getBuffer(), pattern.length(), &status));
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

std::string DateText::text(std::chrono::system_clock::time_point moment) const {
    UDateFormat* const format = format_->open();
    if (format == nullptr) return {};
    // Downwards, so that a moment before 1970 does not show a second that has not come.
    const auto time = std::chrono::floor<std::chrono::milliseconds>(moment.time_since_epoch());
    const auto date = static_cast<UDate>(time.count());
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
