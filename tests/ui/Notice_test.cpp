#include "ui/Notice.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ManualScheduler.h"

namespace kestrix::ui {
namespace {

using namespace std::chrono_literals;

class NoticeTest : public ::testing::Test {
  protected:
    NoticeTest() {
        QObject::connect(&notice_, &Notice::shownChanged, &notice_,
                         [this] { told_.push_back(notice_.text().toStdString()); });
    }
    void show(const char* text) { notice_.show(QString::fromUtf8(text)); }
    std::string text() const { return notice_.text().toStdString(); }

    testing::ManualScheduler scheduler_;
    QObject owner_;
    Notice notice_{scheduler_};
    std::vector<std::string> told_;
};

TEST_F(NoticeTest, WhileItIsHeldNoLineIsShownAndNoneLosesItsTime) {
    show("before");
    scheduler_.advance(Notice::kDuration - 1ms);
    notice_.setHeld(true);
    EXPECT_FALSE(notice_.isShown());
    show("meanwhile");
    scheduler_.advance(1h);
    EXPECT_FALSE(notice_.isShown());
    told_.clear();
    notice_.setHeld(false);
    EXPECT_EQ(told_, std::vector<std::string>{"before"}) << "a screen reader hears of it";
    scheduler_.advance(Notice::kLeastDuration);
    EXPECT_EQ(text(), "meanwhile");
    scheduler_.advance(Notice::kDuration);
    EXPECT_FALSE(notice_.isShown());
    notice_.setHeld(true);
    notice_.setHeld(false);
    EXPECT_FALSE(notice_.isShown());
}

TEST_F(NoticeTest, ALineIsShownAtOnceAndGoesByItself) {
    EXPECT_FALSE(notice_.isShown());
    show("Saved");
    EXPECT_TRUE(notice_.isShown());
    EXPECT_EQ(text(), "Saved");
    scheduler_.advance(Notice::kDuration - 1ms);
    EXPECT_TRUE(notice_.isShown());
    scheduler_.advance(1ms);
    EXPECT_FALSE(notice_.isShown());
    EXPECT_EQ(text(), "");
    EXPECT_EQ(scheduler_.pending(), 0U);
}

TEST_F(NoticeTest, OneOfAnEmptyMatterTakesNobodysPlace) {
    show("plain");
    notice_.show(QStringLiteral("of no matter"), QString());
    notice_.show(QStringLiteral("of none either"), QString());
    EXPECT_EQ(text(), "plain");
    scheduler_.advance(Notice::kLeastDuration);
    EXPECT_EQ(text(), "of no matter");
    scheduler_.advance(Notice::kLeastDuration);
    EXPECT_EQ(text(), "of none either");
}

TEST_F(NoticeTest, ANewerOneOfTheSameMatterTakesThePlaceOfTheOlder) {
    notice_.show(QStringLiteral("S_1"), QStringLiteral("press"));
    scheduler_.advance(500ms);
    notice_.show(QStringLiteral("S_2"), QStringLiteral("press"));
    EXPECT_EQ(text(), "S_2");
    show("another");
    notice_.show(QStringLiteral("S_3"), QStringLiteral("press"));
    EXPECT_EQ(text(), "S_3");
    scheduler_.advance(Notice::kLeastDuration);
    EXPECT_EQ(text(), "another");
    notice_.show(QStringLiteral("S_4"), QStringLiteral("press"));
    notice_.show(QStringLiteral("S_5"), QStringLiteral("press"));
    scheduler_.advance(Notice::kLeastDuration);
    EXPECT_EQ(text(), "S_5");
    scheduler_.advance(Notice::kDuration);
    EXPECT_FALSE(notice_.isShown());
}

TEST_F(NoticeTest, SeveralAreShownOneAfterTheOther) {
    show("one");
    scheduler_.advance(500ms);
    show("two");
    show("three");
    EXPECT_EQ(text(), "one");
    scheduler_.advance(Notice::kLeastDuration - 500ms);
    EXPECT_EQ(text(), "two");
    scheduler_.advance(Notice::kLeastDuration);
    EXPECT_EQ(text(), "three");
    scheduler_.advance(Notice::kDuration);
    EXPECT_FALSE(notice_.isShown());
}

TEST_F(NoticeTest, OneThatWasThereLongEnoughGoesForTheNext) {
    show("one");
    scheduler_.advance(Notice::kLeastDuration + 1s);
    show("two");
    scheduler_.runDue();
    EXPECT_EQ(text(), "two");
}

TEST_F(NoticeTest, BetweenTwoLinesItIsToldThatNoneIsShown) {
    show("one");
    show("two");
    scheduler_.advance(Notice::kLeastDuration);
    EXPECT_EQ(told_, (std::vector<std::string>{"one", "", "two"}));
}

TEST_F(NoticeTest, TheSameLineAgainIsNotShownTwiceButHasItsTimeAnew) {
    show("Not recorded");
    scheduler_.advance(Notice::kDuration - 1ms);
    show("Not recorded");
    scheduler_.advance(Notice::kDuration - 1ms);
    EXPECT_EQ(text(), "Not recorded");
    scheduler_.advance(1ms);
    EXPECT_FALSE(notice_.isShown());
}

TEST_F(NoticeTest, OfMoreThanCanBeReadTheOldestThatWaitsIsDropped) {
    for (const char* line : {"shown", "1", "2", "3", "4", "5"}) show(line);
    std::vector<std::string> read;
    while (notice_.isShown()) {
        read.push_back(text());
        scheduler_.runOne();
    }
    EXPECT_EQ(read, (std::vector<std::string>{"shown", "2", "3", "4", "5"}));
}

TEST_F(NoticeTest, AnActionIsCalledOnceAndTheLineGoes) {
    int undone = 0;
    notice_.show(
        QStringLiteral("Deleted"), QStringLiteral("Undo"),
        [&] {
            EXPECT_FALSE(notice_.isShown());
            ++undone;
        },
        owner_);
    EXPECT_EQ(notice_.actionTitle(), QStringLiteral("Undo"));
    notice_.pressAction();
    notice_.pressAction();
    EXPECT_EQ(undone, 1);
    EXPECT_EQ(scheduler_.pending(), 0U);
}

TEST_F(NoticeTest, AnActionMayShowTheNextLine) {
    notice_.show(
        QStringLiteral("Deleted"), QStringLiteral("Undo"), [this] { show("Restored"); }, owner_);
    notice_.pressAction();
    EXPECT_EQ(text(), "Restored");
    EXPECT_EQ(notice_.actionTitle(), QString());
    scheduler_.advance(Notice::kDuration);
    EXPECT_FALSE(notice_.isShown());
}

TEST_F(NoticeTest, WithItsOwnerAnActionGoesButNotItsLine) {
    auto owner = std::make_unique<QObject>();
    notice_.show(
        QStringLiteral("Deleted"), QStringLiteral("Undo"), [] { FAIL() << "nobody is there"; }, *owner);
    owner.reset();
    EXPECT_EQ(text(), "Deleted");
    EXPECT_EQ(notice_.actionTitle(), QString());
    notice_.pressAction();
    EXPECT_EQ(text(), "Deleted");
}

TEST_F(NoticeTest, ALineWithoutAnActionHasNothingToPress) {
    show("Saved");
    notice_.pressAction();
    EXPECT_EQ(text(), "Saved");
}

TEST_F(NoticeTest, WhoHearsThatItWentMayShowAnother) {
    show("one");
    bool answered = false;
    QObject::connect(&notice_, &Notice::shownChanged, &notice_, [&] {
        if (notice_.isShown() || answered) return;
        answered = true;
        show("two");
    });
    scheduler_.advance(Notice::kDuration);
    EXPECT_EQ(text(), "two");
    scheduler_.advance(Notice::kDuration);
    EXPECT_FALSE(notice_.isShown());
}

TEST_F(NoticeTest, ClearingTakesAwayWhatIsShownAndWhatWaits) {
    show("one");
    show("two");
    notice_.clear();
    EXPECT_FALSE(notice_.isShown());
    EXPECT_EQ(scheduler_.pending(), 0U);
}

}  // namespace
}  // namespace kestrix::ui
