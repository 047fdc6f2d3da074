#include "platform/DateText.h"

#include <gtest/gtest.h>
#include <unicode/ucal.h>
#include <unicode/uloc.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace kestrix::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::system_clock;

constexpr std::string_view kPattern = "YYYY-MM-dd HH:mm:ss";

system_clock::time_point utc(int year, unsigned month, unsigned day, std::chrono::milliseconds time = 0ms) {
    return sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day)) + time;
}

TEST(DateText, ADayWithinTheYearIsWrittenByThePattern) {
    const DateText text(kPattern, "en_US", "UTC");
    EXPECT_EQ(text.text(utc(2024, 6, 3, 9h + 8min + 7s)), "2024-06-03 09:08:07");
}

// A week of en_US begins on Sunday and belongs to the year that its Saturday has; one of de_DE begins on
// Monday and belongs to the year of its Thursday.
TEST(DateText, AroundTheTurnOfTheYearTheYearIsThatOfTheLocalesWeek) {
    struct Row {
        int year;
        unsigned month, day;
        const char* american;
        const char* german;
    };
    constexpr std::array rows{
        Row{2024, 12, 28, "2024-12-28", "2024-12-28"}, Row{2024, 12, 29, "2025-12-29", "2024-12-29"},
        Row{2024, 12, 30, "2025-12-30", "2025-12-30"}, Row{2024, 12, 31, "2025-12-31", "2025-12-31"},
        Row{2025, 1, 1, "2025-01-01", "2025-01-01"},   Row{2022, 12, 31, "2022-12-31", "2022-12-31"},
        Row{2023, 1, 1, "2023-01-01", "2022-01-01"},   Row{2023, 1, 2, "2023-01-02", "2023-01-02"},
        Row{2021, 1, 1, "2021-01-01", "2020-01-01"},   Row{2021, 1, 4, "2021-01-04", "2021-01-04"},
        Row{2023, 12, 31, "2024-12-31", "2023-12-31"},
    };
    const DateText american("YYYY-MM-dd", "en_US", "UTC");
    const DateText german("YYYY-MM-dd", "de_DE", "UTC");
    for (const Row& row : rows) {
        EXPECT_EQ(american.text(utc(row.year, row.month, row.day)), row.american);
        EXPECT_EQ(german.text(utc(row.year, row.month, row.day)), row.german);
    }
}

TEST(DateText, TheCalendarYearIsWrittenWhenThePatternAsksForIt) {
    EXPECT_EQ(DateText("yyyy-MM-dd", "en_US", "UTC").text(utc(2024, 12, 29)), "2024-12-29");
}

TEST(DateText, TheZoneDecidesTheDayAndTheHour) {
    const auto moment = utc(2024, 6, 30, 23h + 30min);
    EXPECT_EQ(DateText(kPattern, "en_US", "UTC").text(moment), "2024-06-30 23:30:00");
    EXPECT_EQ(DateText(kPattern, "en_US", "Asia/Kolkata").text(moment), "2024-07-01 05:00:00");
    EXPECT_EQ(DateText(kPattern, "en_US", "America/New_York").text(moment), "2024-06-30 19:30:00");
}

TEST(DateText, TheWeekYearTurnsAtTheZonesMidnight) {
    const auto moment = utc(2024, 12, 28, 23h + 30min);
    EXPECT_EQ(DateText("YYYY-MM-dd", "en_US", "UTC").text(moment), "2024-12-28");
    EXPECT_EQ(DateText("YYYY-MM-dd", "en_US", "Europe/Berlin").text(moment), "2025-12-29");
}

TEST(DateText, TheHourIsSkippedWhenSummerTimeBegins) {
    const DateText text(kPattern, "de_DE", "Europe/Berlin");
    EXPECT_EQ(text.text(utc(2024, 3, 31, 59min + 59s)), "2024-03-31 01:59:59");
    EXPECT_EQ(text.text(utc(2024, 3, 31, 1h)), "2024-03-31 03:00:00");
}

TEST(DateText, TheHourIsWrittenTwiceWhenSummerTimeEnds) {
    const DateText text(kPattern, "de_DE", "Europe/Berlin");
    EXPECT_EQ(text.text(utc(2024, 10, 27, 30min)), "2024-10-27 02:30:00");
    EXPECT_EQ(text.text(utc(2024, 10, 27, 1h + 30min)), "2024-10-27 02:30:00");
    EXPECT_EQ(text.text(utc(2024, 10, 27, 2h + 30min)), "2024-10-27 03:30:00");
}

TEST(DateText, APartOfASecondIsDropped) {
    const DateText text(kPattern, "en_US", "UTC");
    EXPECT_EQ(text.text(utc(2024, 6, 3, 7s + 999ms)), "2024-06-03 00:00:07");
    EXPECT_EQ(text.text(utc(2024, 6, 3, 7s) - std::chrono::nanoseconds(1)), "2024-06-03 00:00:06");
    EXPECT_EQ(
        DateText("yyyy-MM-dd HH:mm:ss", "en_US", "UTC").text(utc(1970, 1, 1) - std::chrono::nanoseconds(1)),
        "1969-12-31 23:59:59");
}

// The machine's own locale and zone while it lives are these.
class MachineOf {
  public:
    MachineOf(const char* locale, const char16_t* zone) : locale_(uloc_getDefault()) {
        ucal_getDefaultTimeZone(zone_.data(), static_cast<int32_t>(zone_.size()), &status_);
        uloc_setDefault(locale, &status_);
        ucal_setDefaultTimeZone(zone, &status_);
        EXPECT_TRUE(U_SUCCESS(status_));
    }
    MachineOf(const MachineOf&) = delete;
    MachineOf& operator=(const MachineOf&) = delete;
    ~MachineOf() {
        uloc_setDefault(locale_.c_str(), &status_);
        ucal_setDefaultTimeZone(zone_.data(), &status_);
    }

  private:
    UErrorCode status_ = U_ZERO_ERROR;
    std::string locale_;
    std::array<char16_t, 128> zone_{};
};

TEST(DateText, WithoutLocaleAndZoneTheMachinesCount) {
    const auto moment = utc(2024, 12, 28, 23h + 30min);
    {
        const MachineOf machine("en_US", u"Europe/Berlin");
        EXPECT_EQ(DateText(kPattern).text(moment), "2025-12-29 00:30:00");
    }
    const MachineOf machine("de_DE", u"Asia/Tokyo");
    EXPECT_EQ(DateText(kPattern).text(moment), "2024-12-29 08:30:00");
}

TEST(DateText, TheDigitsAreTheLocales) {
    EXPECT_EQ(DateText("dd", "ar_EG", "UTC").text(utc(2024, 6, 3)), "٠٣");
    EXPECT_EQ(DateText("dd", "de_DE", "UTC").text(utc(2024, 6, 3)), "03");
}

TEST(DateText, TextsOfThePatternAreUtf8) {
    EXPECT_EQ(DateText("dd'日 €'", "zh_CN", "UTC").text(utc(2024, 6, 3)), "03日 €");
}

TEST(DateText, ALongTextIsWhole) {
    const std::string long_(5000, '#');
    EXPECT_EQ(DateText("dd'" + long_ + "'", "en_US", "UTC").text(utc(2024, 6, 3)), "03" + long_);
}

TEST(DateText, AnUnknownZoneIsGmt) {
    EXPECT_EQ(DateText(kPattern, "en_US", "Nowhere/Land").text(utc(2024, 6, 3, 9h)), "2024-06-03 09:00:00");
}

TEST(DateText, APatternThatIsNoneGivesNoText) {
    EXPECT_EQ(DateText("nonsense", "en_US", "UTC").text(utc(2024, 6, 3)), "");
    EXPECT_EQ(DateText("", "en_US", "UTC").text(utc(2024, 6, 3)), "");
}

TEST(DateText, ItMovesWithWhatItWasMadeFor) {
    DateText text("dd", "en_US", "UTC");
    const DateText moved(std::move(text));
    EXPECT_EQ(moved.text(utc(2024, 6, 3)), "03");
}

}  // namespace
}  // namespace kestrix::platform
