#include "live/SpokenReading.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/live/MainViewFixture.h"
#include "ui/DisplayUpdates.h"

namespace kestrix::live {
namespace {

class SpokenReadingTest : public MainViewFixture {
  protected:
    std::string spoken() { return screen_->spokenReading()->text().toStdString(); }
};

TEST(SpokenReading, SaysTheWordsAsTheyAreWheneverItIsAsked) {
    ui::Screen screen(ui::ScreenId::MainView);
    QString words = QStringLiteral("one");
    const SpokenReading reading(screen, "reading", [&] { return words; });
    EXPECT_EQ(reading.text(), QStringLiteral("one"));
    words = QStringLiteral("two");
    EXPECT_EQ(reading.text(), QStringLiteral("two"));
}

TEST(SpokenReading, OtherWordsAreToldWithTheNextRoundAndTheSameOnesNot) {
    ui::Screen screen(ui::ScreenId::MainView);
    QString words = QStringLiteral("one");
    SpokenReading reading(screen, "reading", [&] { return words; });
    int told = 0;
    QObject::connect(&reading, &SpokenReading::textChanged, &reading, [&] { ++told; });
    ui::DisplayUpdates& updates = ui::DisplayUpdates::shared();
    reading.refresh();
    EXPECT_EQ(told, 0);
    updates.flush();
    EXPECT_EQ(told, 1);
    reading.refresh();
    updates.flush();
    EXPECT_EQ(told, 1);
    words = QStringLiteral("two");
    reading.refresh();
    updates.flush();
    EXPECT_EQ(told, 2);
}

TEST_F(SpokenReadingTest, WithoutATesterItSaysSo) {
    start();
    EXPECT_EQ(spoken(), "Not Connected");
}

TEST_F(SpokenReadingTest, WithoutARecordThereIsNoReading) {
    start();
    screen_->viewStatus(1);
    EXPECT_EQ(spoken(), "No reading");
}

TEST_F(SpokenReadingTest, ItSaysTheFunctionWhatIsShownAndTheAlarm) {
    start();
    screen_->viewStatus(1);
    receive(recordOf('2'));
    EXPECT_EQ(spoken(), "INSULATION, 1.23 MΩ, 45.6 V");
    receive(recordOf('6'));
    EXPECT_EQ(spoken(), "RCD, 1.23 MΩ");
    protocol::MeterReading alarmed = recordOf('1');
    alarmed.bAlarmFlag = 1;
    receive(alarmed);
    EXPECT_EQ(spoken(), "RE, 1.23 MΩ, 45.6 V, Limit exceeded");
}

TEST_F(SpokenReadingTest, OfASequenceItSaysTheTripTimeThatIsShown) {
    start();
    screen_->viewStatus(1);
    receive(sequenceRecord(1));
    EXPECT_EQ(spoken(), "RCD");
    for (int i = 2; i <= 5; ++i) receive(sequenceRecord(1, i == 5 ? "28" : "18"));
    EXPECT_EQ(spoken(), "RCD, x1/2 180°: 28 ms");
}

TEST_F(SpokenReadingTest, BehindADisconnectNoReadingIsSaidAndTheValueThatStaysOnScreenNeither) {
    start();
    screen_->viewStatus(1);
    for (int i = 0; i < 3; ++i) receive(sequenceRecord(1));
    screen_->viewStatus(0);
    EXPECT_EQ(spoken(), "Not Connected");
    screen_->viewStatus(1);
    EXPECT_EQ(shownLabels(*screen_), "value1");
    EXPECT_EQ(spoken(), "No reading");
}

TEST_F(SpokenReadingTest, ARecordAndAStateAreToldAndARecordWithTheSameWordsIsNot) {
    start();
    ui::DisplayUpdates& updates = ui::DisplayUpdates::shared();
    updates.flush();
    int told = 0;
    QObject::connect(screen_->spokenReading(), &SpokenReading::textChanged, screen_.get(), [&] { ++told; });
    screen_->viewStatus(1);
    updates.flush();
    EXPECT_EQ(told, 1);
    for (int i = 0; i < 3; ++i) {
        receive(recordOf('1'));
        updates.flush();
        EXPECT_EQ(told, 2);
    }
}

}  // namespace
}  // namespace kestrix::live
