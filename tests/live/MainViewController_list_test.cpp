// The record button and the list of this session's measurements.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/live/MainViewFixture.h"
#include "ui/TextMeasure.h"

namespace kestrix::live {
namespace {

using namespace std::chrono_literals;

class SessionListOfScreenTest : public MainViewFixture {
  protected:
    SessionListOfScreenTest() { start(); }
    void press() { screen_->btnRecord.press(); }
    Log names() const {
        Log names;
        for (int i = 0; i < screen_->array.count(); ++i) names.push_back(screen_->array.row(i).DataName);
        return names;
    }
};

TEST_F(SessionListOfScreenTest, PressingRecordBeforeAnyRecordHasArrivedDoesNothing) {
    const std::string before = rightImage();
    press();
    screen_->pressRecord();
    EXPECT_EQ(screen_->array.count(), 0);
    EXPECT_EQ(rightImage(), before);
    EXPECT_TRUE(storedMeasures().empty());
}

// Such a record has no function's text, and still shows the parameters of the one before it.
TEST_F(SessionListOfScreenTest, PressingRecordBehindAFrameThatWasNotUnderstoodDoesNothing) {
    receive(recordOf('2'));
    receive({});
    const std::string before = rightImage();
    press();
    EXPECT_EQ(screen_->array.count(), 0);
    EXPECT_EQ(rightImage(), before);
    EXPECT_TRUE(storedMeasures().empty());
    receive(recordOf('2'));
    press();
    EXPECT_EQ(names(), Log{"S_1"});
}

TEST_F(SessionListOfScreenTest, RecordingWhileNotConnectedStoresAsToldAndSaysOfWhatTimeTheReadingIs) {
    EXPECT_EQ(screen_->timeOfLatestRecord(), "");
    receive(recordOf('1'));
    now_ += 5s;
    receive(recordOf('1'));
    now_ += 1h;
    post(link::Orvoblueviewnotification, std::string("0"));
    EXPECT_FALSE(notice_.isShown());
    press();
    EXPECT_EQ(notice_.text(), QStringLiteral("S_1: not connected, this reading is of 2024-06-03 09:00:05"));
    EXPECT_EQ(screen_->timeOfLatestRecord(), "2024-06-03 09:00:05");
    EXPECT_EQ(screen_->array.row(0).DateTime, "2024-06-03 10:00:05")
        << "stored as told: the time of the press";
}

// A press that waited while the link changed may find another tester there.
TEST_F(SessionListOfScreenTest, RecordingBeforeTheNextTestersFirstReadingSaysOfWhatTimeItIs) {
    receive(recordOf('1'));
    now_ += 5s;
    postState("0");
    postState("1");
    press();
    EXPECT_EQ(notice_.text(),
              QStringLiteral("S_1: no reading since the tester came, this one is of 2024-06-03 09:00:00"));
    notice_.clear();
    receive(recordOf('2'));
    press();
    EXPECT_FALSE(notice_.isShown());
}

// A drop keeps the trip times, because the tester may go on where it was. Another one may have come instead.
TEST_F(SessionListOfScreenTest, RecordingTripTimesOfBeforeTheTesterCameSaysSo) {
    postState("1");
    for (int i = 0; i < 3; ++i) receive(display::sequenceRecord(1, "24.3"));
    postState("0");
    postState("1");
    receive(display::sequenceRecord(0, "----"));
    press();
    EXPECT_EQ(notice_.text(), QStringLiteral("S_1: with trip times of before the tester came"));
    EXPECT_EQ(screen_->array.at(0).mark, QStringLiteral("Old reading"));
    notice_.clear();
    receive(recordOf('1'));
    press();
    EXPECT_FALSE(notice_.isShown());
    EXPECT_EQ(screen_->array.at(1).mark, QString());
    for (int i = 0; i < 3; ++i) receive(display::sequenceRecord(1, "18"));
    press();
    EXPECT_FALSE(notice_.isShown());
}

TEST_F(SessionListOfScreenTest, ARowWithAReadingOfBeforeIsMarked) {
    receive(recordOf('1'));
    postState("0");
    press();
    EXPECT_EQ(screen_->array.at(0).mark, QStringLiteral("Old reading"));
    postState("1");
    press();
    EXPECT_EQ(screen_->array.at(1).mark, QStringLiteral("Old reading"));
    receive(recordOf('2'));
    press();
    EXPECT_EQ(screen_->array.at(2).mark, QString());
}

TEST_F(SessionListOfScreenTest, TheNoticeIsOfTheLatestPress) {
    receive(recordOf('1'));
    postState("0");
    press();
    press();
    EXPECT_TRUE(notice_.text().startsWith(QStringLiteral("S_2: ")));
}

TEST_F(SessionListOfScreenTest, APressWhileConnectedSaysNothing) {
    postState("1");
    receive(recordOf('1'));
    press();
    EXPECT_FALSE(notice_.isShown());
}

TEST_F(SessionListOfScreenTest, APressTakesTheLatestRecordsTexts) {
    receive(recordOf('1'));
    receive(recordOf('2'));
    press();
    ASSERT_EQ(names(), Log{"S_1"});
    const SessionRow& row = screen_->array.row(0);
    EXPECT_EQ(row.Function, "Function");
    EXPECT_EQ(row.Parameters, "Mode=Auto,Current=30mA,Type=AC,Limit=25V");
    EXPECT_EQ(row.Result, "1.23MΩ,45.6V");
    EXPECT_EQ(row.DateTime, "2024-06-03 09:00:00");
    EXPECT_EQ(row.Comments, " ");
    receive(recordOf('1'));
    EXPECT_EQ(screen_->array.row(0).Parameters, "Mode=Auto,Current=30mA,Type=AC,Limit=25V");
}

TEST_F(SessionListOfScreenTest, NoRecordStoresItself) {
    protocol::MeterReading record = recordOf('1');
    record.bRecord = true;
    receive(record);
    EXPECT_EQ(screen_->array.count(), 0);
    EXPECT_TRUE(storedMeasures().empty());
}

TEST_F(SessionListOfScreenTest, TheSaveImageStandsFromTheFirstPressOn) {
    receive(recordOf('1'));
    EXPECT_EQ(rightImage(), "orvo_home_button_history.png");
    press();
    EXPECT_EQ(rightImage(), "orvo_home_button_save.png");
    post(ui::NSClearTable);
    EXPECT_EQ(rightImage(), "orvo_home_button_save.png");
}

TEST_F(SessionListOfScreenTest,
       ThreePressesGiveS1S2S3AndScrollToTheLastRowAndBehindNSClearTableComesS1Again) {
    std::vector<int> scrolledAt;  // the number of rows
    QObject::connect(&screen_->tableView, &ui::Table::lastRowAsked, screen_.get(), [&] {
        scrolledAt.push_back(screen_->array.count());
        EXPECT_EQ(storedMeasures().size(), static_cast<std::size_t>(screen_->array.count()));
    });
    receive(recordOf('1'));
    press();
    press();
    EXPECT_EQ(scrolledAt, std::vector<int>{});
    press();
    EXPECT_EQ(names(), (Log{"S_1", "S_2", "S_3"}));
    EXPECT_EQ(scrolledAt, std::vector<int>{3});
    press();
    EXPECT_EQ(scrolledAt, (std::vector<int>{3, 4}));
    post(ui::NSClearTable);
    EXPECT_EQ(names(), Log{});
    press();
    EXPECT_EQ(names(), Log{"S_1"});
    EXPECT_EQ(scrolledAt, (std::vector<int>{3, 4}));
}

TEST_F(SessionListOfScreenTest, PressesOfTheSameTextsAreRowsOfTheirOwn) {
    receive(recordOf('1'));
    press();
    press();
    EXPECT_EQ(screen_->array.count(), 2);
    EXPECT_EQ(storedMeasures().size(), 2U);
}

TEST_F(SessionListOfScreenTest, TheDatabaseRowsAreTheRowsOfTheListWithTheTimeOfASecondLook) {
    clockStep_ = 1s;
    for (const std::uint8_t function : {'2', '6', '7'}) {
        receive(recordOf(function));
        press();
    }
    const auto stored = storedMeasures();
    ASSERT_EQ(stored.size(), 3U);
    const char* const times[] = {"2024-06-03 09:00:01", "2024-06-03 09:00:02", "2024-06-03 09:00:04",
                                 "2024-06-03 09:00:05", "2024-06-03 09:00:07", "2024-06-03 09:00:08"};
    for (std::size_t i = 0; i < stored.size(); ++i) {
        SCOPED_TRACE(i);
        const SessionRow& row = screen_->array.row(static_cast<int>(i));
        EXPECT_EQ(stored[i].dataId, static_cast<std::int64_t>(i + 1));
        EXPECT_EQ(stored[i].recordId, 0);
        EXPECT_EQ(stored[i].dataName, row.DataName);
        EXPECT_EQ(stored[i].function, row.Function);
        EXPECT_EQ(stored[i].parameters, row.Parameters);
        EXPECT_EQ(stored[i].result, row.Result);
        EXPECT_EQ(stored[i].comments, " ");
        EXPECT_EQ(stored[i].recordName, "");
        EXPECT_EQ(row.DateTime, times[2 * i]);
        EXPECT_EQ(stored[i].dateTime, times[2 * i + 1]);
        EXPECT_NE(row.Result, "");
    }
}

TEST_F(SessionListOfScreenTest, TheMeasurementThatIsHandedToTheDatabaseIsOneObject) {
    receive(recordOf('2'));
    const storage::MeasureData* const med = screen_->med.get();
    screen_->med->recordId = 7;
    screen_->med->recordName = "old";
    press();
    EXPECT_EQ(screen_->med.get(), med);
    EXPECT_EQ(*med, (storage::MeasureData{0, 0, "S_1", "Function", "Mode=Auto,Current=30mA,Type=AC,Limit=25V",
                                          "1.23MΩ,45.6V", "2024-06-03 09:00:00", " ", ""}));
}

TEST_F(SessionListOfScreenTest, ClearingTheListLeavesTheDatabase) {
    receive(recordOf('1'));
    press();
    screen_->pressClearTable();
    EXPECT_EQ(screen_->array.count(), 0);
    EXPECT_EQ(storedMeasures().size(), 1U);
    press();
    const auto stored = storedMeasures();
    ASSERT_EQ(stored.size(), 2U);
    EXPECT_EQ(stored[0].dataName, "S_1");
    EXPECT_EQ(stored[1].dataName, "S_1");
}

TEST_F(SessionListOfScreenTest, TheListStartsEmptyAlthoughTheDatabaseHoldsMeasurements) {
    receive(recordOf('1'));
    press();
    start();
    EXPECT_EQ(screen_->array.count(), 0);
    EXPECT_EQ(storedMeasures().size(), 1U);
}

// The week of 2024-12-29 to 2025-01-04 has the year of its Saturday.
TEST_F(SessionListOfScreenTest, AroundTheTurnOfTheYearTheYearIsThatOfTheWeek) {
    struct Row {
        std::chrono::year_month_day day;
        const char* text;
    };
    using std::chrono::year;
    const Row rows[] = {{year(2024) / 12 / 28, "2024-12-28 23:59:59"},
                        {year(2024) / 12 / 29, "2025-12-29 23:59:59"},
                        {year(2024) / 12 / 31, "2025-12-31 23:59:59"},
                        {year(2025) / 1 / 1, "2025-01-01 23:59:59"},
                        {year(2023) / 12 / 31, "2024-12-31 23:59:59"}};
    receive(recordOf('1'));
    for (const Row& row : rows) {
        now_ = std::chrono::sys_days(row.day) + 24h - 1s;
        EXPECT_EQ(screen_->getTimeNow(), row.text);
        press();
        EXPECT_EQ(screen_->array.row(screen_->array.count() - 1).DateTime, row.text);
        EXPECT_EQ(storedMeasures().back().dateTime, row.text);
    }
}

TEST_F(SessionListOfScreenTest, TheLongerTextDecidesTheHeightAndOnATieTheResult) {
    struct Row {
        const char* parameters;
        const char* result;
        const char* measured;
    };
    for (const Row& row :
         {Row{"long parameters", "result", "long parameters"}, Row{"short", "result", "result"},
          Row{"same", "size", "size"}, Row{"", "", ""}, Row{"ab", "Ω", "ab"}, Row{"ΩΩ", "abc", "abc"}}) {
        screen_->getCellHeight(QString::fromUtf8(row.parameters), QString::fromUtf8(row.result));
        EXPECT_EQ(fixedMeasure_.measured.text, row.measured);
        EXPECT_EQ(fixedMeasure_.measured.family, "helvetica");
        EXPECT_EQ(fixedMeasure_.measured.size, 8);
        EXPECT_EQ(fixedMeasure_.measured.width, 60);
        EXPECT_EQ(fixedMeasure_.measured.maxHeight, 300);
    }
}

TEST_F(SessionListOfScreenTest, ARowIsAtLeast20PointsHigh) {
    struct Row {
        double measured, height;
    };
    for (const Row& row : {Row{0, 20}, Row{19.5, 20}, Row{20, 20}, Row{20.5, 20.5}, Row{300, 300}}) {
        fixedMeasure_.height = row.measured;
        EXPECT_EQ(screen_->getCellHeight(QStringLiteral("a"), {}), row.height);
    }
}

TEST_F(SessionListOfScreenTest, EachRowOfTheListHasTheHeightOfItsTexts) {
    receive(recordOf('1'));
    fixedMeasure_.height = 47.5;
    press();
    EXPECT_EQ(fixedMeasure_.measured.text, "1.23MΩ,45.6V");
    fixedMeasure_.height = 3;
    receive(recordOf('2'));
    press();
    EXPECT_EQ(fixedMeasure_.measured.text, "Mode=Auto,Current=30mA,Type=AC,Limit=25V");
    EXPECT_EQ(screen_->array.height(0), 47.5);
    EXPECT_EQ(screen_->array.height(1), 20);
}

class MeasuredRowTest : public MainViewFixture {
  protected:
    MeasuredRowTest() {
        textMeasure_ = &fontMeasure_;
        start();
    }
    double height(const QString& parameters, const QString& result) const {
        return screen_->getCellHeight(parameters, result);
    }
    ui::FontTextMeasure fontMeasure_;
};

TEST_F(MeasuredRowTest, AResultOf40CharactersGivesARowTallerThan20PointsAndTwoEmptyTextsExactly20) {
    EXPECT_GT(height({}, QStringLiteral("L-PE=230V,N-PE=1V,L-N=229V,UF:2.5V,UL:50")), 20);
    EXPECT_GT(height({}, QString(40, u'x')), 20);
    EXPECT_EQ(height({}, {}), 20);
}

TEST_F(MeasuredRowTest, NoRowIsHigherThan300Points) {
    EXPECT_EQ(height(QString(5000, u'x'), {}), 300);
}

}  // namespace
}  // namespace kestrix::live
