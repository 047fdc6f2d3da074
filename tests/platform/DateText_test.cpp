#include "platform/DateText.h"

#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <cstdlib>
#include <ctime>
#include <optional>
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

// The user's own locale while it lives.
class UserOf {
  public:
    explicit UserOf(const char* locale) : locale_(uloc_getDefault()) { uloc_setDefault(locale, &status_); }
    UserOf(const UserOf&) = delete;
    UserOf& operator=(const UserOf&) = delete;
    ~UserOf() { uloc_setDefault(locale_.c_str(), &status_); }

  private:
    UErrorCode status_ = U_ZERO_ERROR;
    std::string locale_;
};

// The machine's zone while it lives.
class MachineIn {
  public:
    explicit MachineIn(const char* zone) {
        if (const char* before = std::getenv("TZ")) before_ = before;
        moveTo(zone);
    }
    MachineIn(const MachineIn&) = delete;
    MachineIn& operator=(const MachineIn&) = delete;
    ~MachineIn() {
        if (before_) {
            setenv("TZ", before_->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }
    void moveTo(const char* zone) { setenv("TZ", zone, 1); }

  private:
    std::optional<std::string> before_;
};

TEST(DateText, WithoutALocaleTheUsersWeekRulesCount) {
    const auto moment = utc(2024, 12, 29);
    {
        const UserOf american("en_US");
        EXPECT_EQ(DateText(kPattern, {}, "UTC").text(moment), "2025-12-29 00:00:00");
    }
    const UserOf german("de_DE");
    EXPECT_EQ(DateText(kPattern, {}, "UTC").text(moment), "2024-12-29 00:00:00");
}

TEST(DateText, WithoutAZoneTheMachinesCountsAlsoWhenItChangesWhileRunning) {
    const auto moment = utc(2024, 6, 30, 23h + 30min);
    MachineIn machine("Europe/Berlin");
    const DateText text(kPattern, "en_US");
    EXPECT_EQ(text.text(moment), "2024-07-01 01:30:00");
    machine.moveTo("Asia/Tokyo");
    EXPECT_EQ(text.text(moment), "2024-07-01 08:30:00");
    machine.moveTo("America/New_York");
    EXPECT_EQ(text.text(moment), "2024-06-30 19:30:00");
}

TEST(DateText, AnotherFileOfTheMachinesZoneIsNoticed) {
    const QTemporaryDir folder;
    const std::string link = folder.filePath(QStringLiteral("localtime")).toStdString();
    const auto write = [&folder](const char* name) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    };
    const std::string none = machineZoneState(link.c_str());
    write("Berlin");
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("Berlin")), QString::fromStdString(link)));
    const std::string berlin = machineZoneState(link.c_str());
    EXPECT_NE(berlin, none);
    EXPECT_EQ(machineZoneState(link.c_str()), berlin);
    write("Tokyo");
    ASSERT_TRUE(QFile::remove(QString::fromStdString(link)));
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("Tokyo")), QString::fromStdString(link)));
    EXPECT_NE(machineZoneState(link.c_str()), berlin);
}

// What is stored is cut at fixed places, and read by programs that know no other digits.
TEST(DateText, DigitsAreLatinAndTheCalendarIsGregorianInEveryLocale) {
    for (const char* locale : {"ar_EG", "fa_IR", "fa_IR@calendar=persian", "th_TH", "th_TH_TH", "mr_IN",
                               "my_MM", "ne_NP", "ja_JP@calendar=japanese", "en_US@numbers=arab", "ar_SA"}) {
        EXPECT_EQ(DateText("yyyy-MM-dd HH:mm:ss", locale, "UTC").text(utc(2024, 6, 3, 9h + 8min + 7s)),
                  "2024-06-03 09:08:07")
            << locale;
        const UserOf user(locale);
        EXPECT_EQ(DateText(kPattern, {}, "UTC").text(utc(2024, 6, 3, 9h + 8min + 7s)), "2024-06-03 09:08:07")
            << locale;
    }
}

// A week of Egypt begins on Saturday, and belongs to the year that its Friday has.
TEST(DateText, TheWeekRulesOfALocaleStayWithoutItsDigits) {
    EXPECT_EQ(DateText("YYYY-MM-dd", "ar_EG", "UTC").text(utc(2024, 12, 27)), "2024-12-27");
    EXPECT_EQ(DateText("YYYY-MM-dd", "ar_EG", "UTC").text(utc(2024, 12, 28)), "2025-12-28");
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

TEST(DateText, TellsHowFarTheZoneIsAheadOfUtc) {
    using namespace std::chrono;
    const auto winter = sys_days(year(2026) / 1 / 15) + hours(12);
    const auto summer = sys_days(year(2026) / 7 / 15) + hours(12);
    const DateText berlin(kTimePattern, "en_US", "Europe/Berlin");
    EXPECT_EQ(berlin.utcOffset(winter), 3600);
    EXPECT_EQ(berlin.utcOffset(summer), 7200);
    EXPECT_EQ(DateText(kTimePattern, "en_US", "America/St_Johns").utcOffset(winter), -12600);
    EXPECT_EQ(DateText(kTimePattern, "en_US", "UTC").utcOffset(summer), 0);
}

}  // namespace
}  // namespace kestrix::platform
