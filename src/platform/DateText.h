#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kestrix::platform {

// The pattern in which times are stored and shown. "YYYY" is the year of the week: around the turn of a year
// it can be the next or the previous one.
inline constexpr const char* kTimePattern = "YYYY-MM-dd HH:mm:ss";
// The pattern of the names of exported files, fourteen digits.
inline constexpr const char* kStampPattern = "yyyyMMddHHmmss";

// What the machine's time zone depends on; another text when it may have changed. link: the file that names
// the zone where the environment does not.
std::string machineZoneState(const char* link = "/etc/localtime");

// Writes moments as text by a date pattern, as ICU reads it: "yyyy" is the calendar year, "YYYY" the year
// that the locale's week belongs to, so the last days of December may carry the next year's number.
class DateText {
  public:
    // pattern, locale ("en_US"), zone ("Europe/Berlin"): UTF-8. Of the locale only the week rules count. An
    // empty locale is the user's, as it is at the first text; an empty zone is the machine's, as it is at
    // each text. An unknown locale is ICU's root locale, an unknown zone is GMT.
    explicit DateText(std::string_view pattern, std::string_view locale = {}, std::string_view zone = {});
    DateText(DateText&&) noexcept;
    DateText& operator=(DateText&&) noexcept;
    ~DateText();

    // UTF-8, in Latin digits and the Gregorian calendar; a part of a unit that the pattern does not show is
    // dropped. Empty when the pattern is none.
    std::string text(std::chrono::system_clock::time_point moment) const;
    // How far the zone is ahead of UTC at this moment, in seconds. 0 when the pattern is none.
    std::int32_t utcOffset(std::chrono::system_clock::time_point moment) const;

  private:
    struct Format;
    std::unique_ptr<Format> format_;
};

}  // namespace kestrix::platform
