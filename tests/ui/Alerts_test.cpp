#include "ui/Alerts.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kestrix::ui {
namespace {

class AlertsTest : public ::testing::Test {
  protected:
    void show(const char* title) { show(title, owner_); }
    void show(const char* title, const QObject& owner) {
        const std::string name = title;
        alerts_.show(
            {.title = QString::fromUtf8(title),
             .text = QStringLiteral("Really?"),
             .buttons = {QStringLiteral("No"), QStringLiteral("Yes")},
             .answered = [this,
                          name](int button) { answers_.push_back(name + " " + std::to_string(button)); }},
            owner);
    }
    std::string title() const { return alerts_.title().toStdString(); }

    QObject owner_;
    Alerts alerts_;
    std::vector<std::string> answers_;
};

TEST_F(AlertsTest, AnAlertIsShownUntilItIsAnswered) {
    EXPECT_FALSE(alerts_.isShown());
    show("Delete");
    EXPECT_TRUE(alerts_.isShown());
    EXPECT_EQ(title(), "Delete");
    EXPECT_EQ(alerts_.text(), QStringLiteral("Really?"));
    EXPECT_EQ(alerts_.buttons(), QStringList({QStringLiteral("No"), QStringLiteral("Yes")}));
    alerts_.answer(1);
    EXPECT_EQ(answers_, std::vector<std::string>{"Delete 1"});
    EXPECT_FALSE(alerts_.isShown());
    EXPECT_EQ(title(), "");
}

TEST_F(AlertsTest, EscapeAnswersWithTheCancelButton) {
    alerts_.show({.title = QStringLiteral("Delete"),
                  .buttons = {QStringLiteral("Yes"), QStringLiteral("No")},
                  .cancelButton = 1,
                  .answered = [this](int button) { answers_.push_back(std::to_string(button)); }},
                 owner_);
    alerts_.cancel();
    EXPECT_EQ(answers_, std::vector<std::string>{"1"});
}

TEST_F(AlertsTest, EscapeAndBackCancelWithPlainModifiersOnlyAndNotWhileHeldDown) {
    for (const int key : {Qt::Key_Escape, Qt::Key_Back}) {
        for (const int plain : {Qt::NoModifier, Qt::KeypadModifier}) {
            answers_.clear();
            show("Delete");
            for (const int foreign : {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier})
                EXPECT_TRUE(alerts_.pressKey(key, foreign, false));
            EXPECT_TRUE(alerts_.pressKey(key, plain, true));
            EXPECT_TRUE(alerts_.isShown()) << key;
            EXPECT_TRUE(alerts_.pressKey(key, plain, false));
            EXPECT_EQ(answers_, std::vector<std::string>{"Delete 0"}) << key << " " << plain;
        }
    }
}

TEST_F(AlertsTest, NothingBehindHearsAKeyButTabGoesOn) {
    show("Delete");
    for (const int key : {Qt::Key_Space, Qt::Key_R, Qt::Key_F1})
        EXPECT_TRUE(alerts_.pressKey(key, Qt::NoModifier, false)) << key;
    EXPECT_FALSE(alerts_.pressKey(Qt::Key_Tab, Qt::NoModifier, false));
    EXPECT_FALSE(alerts_.pressKey(Qt::Key_Backtab, Qt::ShiftModifier, false));
    EXPECT_TRUE(alerts_.isShown());
}

TEST_F(AlertsTest, FurtherOnesWaitUntilTheFirstIsAnswered) {
    show("one");
    show("two");
    EXPECT_EQ(title(), "one");
    alerts_.answer(0);
    EXPECT_EQ(title(), "two");
    alerts_.answer(1);
    EXPECT_EQ(answers_, (std::vector<std::string>{"one 0", "two 1"}));
}

TEST_F(AlertsTest, BetweenTwoAlertsNoneIsShown) {
    show("one");
    show("two");
    std::vector<std::string> told;
    QObject::connect(&alerts_, &Alerts::shownChanged, &alerts_, [&] { told.push_back(title()); });
    alerts_.answer(0);
    EXPECT_EQ(told, (std::vector<std::string>{"", "two"}));
}

TEST_F(AlertsTest, OneWhoseOwnerGoesBetweenTwoIsForgotten) {
    auto owner = std::make_unique<QObject>();
    show("one");
    show("two", *owner);
    show("three");
    QObject::connect(&alerts_, &Alerts::shownChanged, &alerts_, [&] { owner.reset(); });
    alerts_.answer(0);
    EXPECT_EQ(title(), "three");
}

TEST_F(AlertsTest, AnAnswerMayShowAnother) {
    alerts_.show({.title = QStringLiteral("one"), .answered = [this](int) { show("two"); }}, owner_);
    alerts_.answer(0);
    EXPECT_EQ(title(), "two");
}

TEST_F(AlertsTest, WhatItDoesNotHaveIsNoAnswer) {
    show("one");
    alerts_.answer(2);
    alerts_.answer(-1);
    EXPECT_EQ(title(), "one");
    alerts_.answer(0);
    alerts_.answer(0);
    alerts_.cancel();
    EXPECT_EQ(answers_, std::vector<std::string>{"one 0"});
}

TEST_F(AlertsTest, WithoutButtonsItHasOneToGoAwayBy) {
    alerts_.show({.title = QStringLiteral("Tips")}, owner_);
    EXPECT_EQ(alerts_.buttons().size(), 1);
    alerts_.cancel();
    EXPECT_FALSE(alerts_.isShown());
}

TEST_F(AlertsTest, WithItsOwnerItGoesUnanswered) {
    auto owner = std::make_unique<QObject>();
    int told = 0;
    QObject::connect(&alerts_, &Alerts::shownChanged, &alerts_, [&] { ++told; });
    show("one", *owner);
    show("two");
    show("three", *owner);
    owner.reset();
    EXPECT_EQ(title(), "two");
    EXPECT_EQ(told, 2);
    alerts_.answer(0);
    EXPECT_FALSE(alerts_.isShown());
    EXPECT_EQ(answers_, std::vector<std::string>{"two 0"});
}

// One that lives as long as the application asks many a question.
TEST_F(AlertsTest, AnAnsweredOneLeavesNothingAtItsOwner) {
    struct Owner : QObject {
        int listeners() const { return receivers(SIGNAL(destroyed(QObject*))); }
    } owner;
    const int before = owner.listeners();
    show("one", owner);
    EXPECT_GT(owner.listeners(), before);
    alerts_.answer(0);
    EXPECT_EQ(owner.listeners(), before);
}

TEST_F(AlertsTest, AnAnswerMayDestroyItsOwner) {
    auto owner = std::make_unique<QObject>();
    alerts_.show({.title = QStringLiteral("Leave"), .answered = [&](int) { owner.reset(); }}, *owner);
    show("two");
    alerts_.answer(0);
    EXPECT_EQ(owner, nullptr);
    EXPECT_EQ(title(), "two");
}

}  // namespace
}  // namespace kestrix::ui
