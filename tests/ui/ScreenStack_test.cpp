#include "ui/ScreenStack.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/LogExpectations.h"

namespace kestrix::ui {
namespace {

using namespace std::chrono_literals;
using Log = std::vector<std::string>;

// Writes its life into the test's log.
class LoggedScreen final : public Screen {
  public:
    LoggedScreen(ScreenId id, std::string name, Log& log) : Screen(id), name_(std::move(name)), log_(log) {}
    ~LoggedScreen() override { log_.push_back(name_ + " destroyed"); }
    void viewDidLoad() override { log_.push_back(name_ + " viewDidLoad"); }
    void viewWillAppear() override { log_.push_back(name_ + " viewWillAppear"); }
    void viewDidAppear() override { log_.push_back(name_ + " viewDidAppear"); }
    void viewWillDisappear() override {
        log_.push_back(name_ + " viewWillDisappear");
        if (whenItGoes) whenItGoes();
    }

    Button leave{*this, "leave", Button::Event::TouchUpInside};
    std::function<void()> whenItGoes;

  private:
    std::string name_;
    Log& log_;
};

class ScreenStackTest : public ::testing::Test {
  protected:
    ScreenStackTest() {
        registerScreen(sliding_, ScreenId::SaveData, "save");
        registerScreen(sliding_, ScreenId::BluetoothConnectionHelp, "help");
        registerScreen(instant_, ScreenId::SaveData, "save");
        logRows(sliding_);
        logRows(instant_);
    }
    void registerScreen(ScreenStack& stack, ScreenId id, const char* name) {
        stack.registerScreen(
            id, [this, id, name] { return std::make_unique<LoggedScreen>(id, name, log_); },
            QUrl(QStringLiteral("qrc:/%1.qml").arg(QLatin1String(name))));
    }
    void logRows(const ScreenStack& stack) {
        QObject::connect(&stack, &QAbstractItemModel::rowsInserted, &stack,
                         [this] { log_.push_back("row inserted"); });
        QObject::connect(&stack, &QAbstractItemModel::rowsRemoved, &stack,
                         [this] { log_.push_back("row removed"); });
    }
    // Slid in.
    Screen* presented(ScreenId id) {
        sliding_.present(id, true);
        Screen* const screen = sliding_.topmost();
        sliding_.slidIn(screen);
        taken();
        return screen;
    }
    Log taken() { return std::exchange(log_, {}); }
    // What the event loop destroys later.
    static void destroyLeft() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    static QVariant value(const ScreenStack& stack, int row, int role) {
        return stack.data(stack.index(row), role);
    }

    Log log_;
    ScreenStack sliding_{300ms};
    ScreenStack instant_{0ms};
};

TEST_F(ScreenStackTest, APresentedScreenLoadsWillAppearIsShownAndHasAppeared) {
    instant_.present(ScreenId::SaveData, false);
    EXPECT_EQ(taken(),
              (Log{"save viewDidLoad", "save viewWillAppear", "row inserted", "save viewDidAppear"}));
    EXPECT_EQ(instant_.count(), 1);
    EXPECT_EQ(instant_.topmost()->id(), ScreenId::SaveData);
    instant_.dismiss(false);
    EXPECT_EQ(taken(), (Log{"save viewWillDisappear", "row removed"}));
    EXPECT_EQ(instant_.count(), 0);
    EXPECT_EQ(instant_.topmost(), nullptr);
    destroyLeft();
    EXPECT_EQ(taken(), Log{"save destroyed"});
}

TEST_F(ScreenStackTest, WithADurationOfZeroNothingIsAnimated) {
    instant_.present(ScreenId::SaveData, true);
    EXPECT_EQ(taken().back(), "save viewDidAppear");
    EXPECT_FALSE(value(instant_, 0, ScreenStack::AnimatedRole).toBool());
    instant_.dismiss(true);
    EXPECT_EQ(instant_.count(), 0);
    EXPECT_EQ(instant_.slideDuration(), 0);
}

TEST_F(ScreenStackTest, AScreenMayDismissItselfFromInsideItsOwnCall) {
    instant_.present(ScreenId::SaveData, false);
    auto* const screen = dynamic_cast<LoggedScreen*>(instant_.topmost());
    std::string seen;
    screen->leave.setAction([&, screen] {
        instant_.dismiss(false);
        seen = screen->leave.objectName().toStdString();  // still there
    });
    taken();
    screen->leave.press();
    EXPECT_EQ(seen, "leave");
    EXPECT_EQ(taken(), (Log{"save viewWillDisappear", "row removed"}));
    destroyLeft();
    EXPECT_EQ(taken(), Log{"save destroyed"});
}

TEST_F(ScreenStackTest, AScreenMayPresentAnotherAsItGoes) {
    sliding_.present(ScreenId::SaveData, false);
    auto* const screen = dynamic_cast<LoggedScreen*>(sliding_.topmost());
    screen->whenItGoes = [this] {
        for (int i = 0; i < 8; ++i) sliding_.present(ScreenId::BluetoothConnectionHelp, false);
    };
    sliding_.dismiss(true);
    EXPECT_EQ(sliding_.count(), 9);
    EXPECT_EQ(value(sliding_, 0, ScreenStack::LeavingRole), true);
    EXPECT_EQ(value(sliding_, 8, ScreenStack::LeavingRole), false);
    EXPECT_EQ(sliding_.topmost()->id(), ScreenId::BluetoothConnectionHelp);
}

TEST_F(ScreenStackTest, EveryPresentationMakesANewScreen) {
    instant_.present(ScreenId::SaveData, false);
    const Screen* const first = instant_.topmost();
    instant_.present(ScreenId::SaveData, false);
    EXPECT_NE(instant_.topmost(), first);
    EXPECT_EQ(instant_.count(), 2);
    instant_.dismiss(false);
    EXPECT_EQ(instant_.topmost(), first);
}

TEST_F(ScreenStackTest, AScreenThatNobodyRegisteredIsWarnedOfAndNotPresented) {
    testing::expectWarning("no screen is registered for");
    instant_.present(ScreenId::BluetoothConnectionHelp, false);
    EXPECT_EQ(instant_.count(), 0);
    EXPECT_EQ(taken(), Log{});
}

TEST_F(ScreenStackTest, KnowsWhichScreensThereAre) {
    EXPECT_TRUE(instant_.has(ScreenId::SaveData));
    EXPECT_FALSE(instant_.has(ScreenId::BluetoothConnectionHelp));
}

TEST_F(ScreenStackTest, WhoIsAskedForAScreenThatIsNotThereHearsWhichOne) {
    std::vector<ScreenId> missing;
    instant_.setMissing([&](ScreenId id) { missing.push_back(id); });
    testing::expectWarning("no screen is registered for BluetoothConnectionHelp");
    instant_.present(ScreenId::BluetoothConnectionHelp, false);
    EXPECT_EQ(missing, std::vector<ScreenId>{ScreenId::BluetoothConnectionHelp});
}

TEST_F(ScreenStackTest, WhatLiesBehindAScreenThatIsInPlaceIsCovered) {
    LoggedScreen root(ScreenId::MainView, "root", log_);
    sliding_.setRoot(&root);
    sliding_.present(ScreenId::SaveData, true);
    Screen* const first = sliding_.topmost();
    EXPECT_FALSE(root.isCovered());  // it slides over it
    sliding_.slidIn(first);
    EXPECT_TRUE(root.isCovered());
    Screen* const second = presented(ScreenId::BluetoothConnectionHelp);
    EXPECT_TRUE(first->isCovered());
    EXPECT_FALSE(second->isCovered());
    sliding_.dismiss(true);
    EXPECT_FALSE(first->isCovered());
    EXPECT_TRUE(root.isCovered());
    sliding_.slidOut(second);
    sliding_.dismiss(true);
    EXPECT_FALSE(root.isCovered());
    sliding_.slidOut(first);
    sliding_.present(ScreenId::SaveData, false);
    EXPECT_TRUE(root.isCovered());
    sliding_.dismiss(false);
    EXPECT_FALSE(root.isCovered());
}

TEST_F(ScreenStackTest, ADismissalInsideADismissalTakesTheNextScreen) {
    for (ScreenStack* stack : {&instant_, &sliding_}) {
        stack->present(ScreenId::SaveData, false);
        stack->present(ScreenId::SaveData, false);
        dynamic_cast<LoggedScreen*>(stack->topmost())->whenItGoes = [stack] { stack->dismiss(true); };
        stack->dismiss(true);
        EXPECT_EQ(stack->topmost(), nullptr);
        dynamic_cast<QObject*>(stack)->disconnect();
    }
    EXPECT_EQ(instant_.count(), 0);
    EXPECT_EQ(sliding_.count(), 2);
}

TEST_F(ScreenStackTest, AScreenMayDismissItselfAsItAppears) {
    LoggedScreen root(ScreenId::MainView, "root", log_);
    instant_.setRoot(&root);
    QObject::connect(&root, &Screen::coveredChanged, &root, [&] {
        if (root.isCovered()) instant_.dismiss(false);
    });
    instant_.present(ScreenId::SaveData, false);
    EXPECT_EQ(instant_.count(), 0);
    EXPECT_FALSE(root.isCovered());
    destroyLeft();
}

TEST_F(ScreenStackTest, WithoutAScreenThereIsNothingToDismiss) {
    instant_.dismiss(false);
    sliding_.dismiss(true);
    EXPECT_EQ(taken(), Log{});
}

TEST_F(ScreenStackTest, AStackDestroysTheScreensThatItHolds) {
    {
        ScreenStack stack(0ms);
        registerScreen(stack, ScreenId::SaveData, "save");
        stack.present(ScreenId::SaveData, false);
        taken();
    }
    EXPECT_EQ(taken(), Log{"save destroyed"});
}

TEST_F(ScreenStackTest, AScreenHasAppearedWhenItHasSlidIn) {
    sliding_.present(ScreenId::SaveData, true);
    EXPECT_EQ(value(sliding_, 0, ScreenStack::AnimatedRole), true);
    EXPECT_EQ(taken().back(), "row inserted");
    sliding_.slidIn(sliding_.topmost());
    EXPECT_EQ(taken(), Log{"save viewDidAppear"});
    EXPECT_EQ(sliding_.slideDuration(), 300);
}

TEST_F(ScreenStackTest, WithoutAnimationItAppearsAndGoesAtOnce) {
    sliding_.present(ScreenId::SaveData, false);
    EXPECT_EQ(value(sliding_, 0, ScreenStack::AnimatedRole), false);
    EXPECT_EQ(taken().back(), "save viewDidAppear");
    sliding_.dismiss(false);
    EXPECT_EQ(taken(), (Log{"save viewWillDisappear", "row removed"}));
}

TEST_F(ScreenStackTest, ADismissedScreenStaysUntilItHasSlidOut) {
    Screen* const screen = presented(ScreenId::SaveData);
    int leavingTold = 0;
    QObject::connect(&sliding_, &QAbstractItemModel::dataChanged, &sliding_,
                     [&](const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
                         EXPECT_EQ(first.row(), 0);
                         EXPECT_EQ(last.row(), 0);
                         EXPECT_EQ(roles, QList<int>{ScreenStack::LeavingRole});
                         ++leavingTold;
                     });
    EXPECT_EQ(value(sliding_, 0, ScreenStack::LeavingRole), false);
    sliding_.dismiss(true);
    EXPECT_EQ(value(sliding_, 0, ScreenStack::LeavingRole), true);
    EXPECT_EQ(leavingTold, 1);
    EXPECT_EQ(taken(), Log{"save viewWillDisappear"});
    EXPECT_EQ(sliding_.count(), 1);
    EXPECT_EQ(sliding_.topmost(), nullptr);
    sliding_.slidOut(screen);
    EXPECT_EQ(taken(), Log{"row removed"});
    EXPECT_EQ(sliding_.count(), 0);
}

TEST_F(ScreenStackTest, ALeavingScreenIsNotDismissedOnceMore) {
    presented(ScreenId::SaveData);
    sliding_.dismiss(true);
    taken();
    sliding_.dismiss(true);
    EXPECT_EQ(taken(), Log{});
}

TEST_F(ScreenStackTest, BehindALeavingScreenTheOneBeforeIsTheTopmost) {
    Screen* const first = presented(ScreenId::SaveData);
    presented(ScreenId::BluetoothConnectionHelp);
    sliding_.dismiss(true);
    EXPECT_EQ(sliding_.topmost(), first);
    taken();
    sliding_.dismiss(true);
    EXPECT_EQ(taken(), Log{"save viewWillDisappear"});
    sliding_.slidOut(first);
    EXPECT_EQ(sliding_.count(), 1);
    EXPECT_EQ(value(sliding_, 0, ScreenStack::LeavingRole), true);
}

TEST_F(ScreenStackTest, AScreenThatIsNotLeavingDoesNotSlideOut) {
    Screen* const screen = presented(ScreenId::SaveData);
    sliding_.slidOut(screen);
    EXPECT_EQ(sliding_.count(), 1);
    sliding_.slidOut(nullptr);
    EXPECT_EQ(sliding_.count(), 1);
}

TEST_F(ScreenStackTest, AScreenThatIsDismissedWhileItSlidesInHasNeverAppeared) {
    sliding_.present(ScreenId::SaveData, true);
    Screen* const screen = sliding_.topmost();
    sliding_.dismiss(true);
    taken();
    sliding_.slidIn(screen);
    EXPECT_EQ(taken(), Log{});
    sliding_.slidIn(nullptr);
    EXPECT_EQ(taken(), Log{});
}

TEST_F(ScreenStackTest, TheRolesAreTheViewsProperties) {
    presented(ScreenId::SaveData);
    Screen* const screen = presented(ScreenId::BluetoothConnectionHelp);
    EXPECT_EQ(sliding_.rowCount(), 2);
    EXPECT_EQ(sliding_.rowCount(sliding_.index(0)), 0);
    EXPECT_EQ(value(sliding_, 1, ScreenStack::ScreenRole).value<Screen*>(), screen);
    EXPECT_EQ(value(sliding_, 0, ScreenStack::ViewRole).toUrl(), QUrl(QStringLiteral("qrc:/save.qml")));
    EXPECT_EQ(value(sliding_, 1, ScreenStack::ViewRole).toUrl(), QUrl(QStringLiteral("qrc:/help.qml")));
    EXPECT_FALSE(value(sliding_, 0, Qt::DisplayRole).isValid());
    EXPECT_FALSE(sliding_.data({}, ScreenStack::ViewRole).isValid());
    const QHash<int, QByteArray> names{{ScreenStack::ScreenRole, "screen"},
                                       {ScreenStack::ViewRole, "view"},
                                       {ScreenStack::AnimatedRole, "animated"},
                                       {ScreenStack::LeavingRole, "leaving"}};
    EXPECT_EQ(sliding_.roleNames(), names);
}

TEST_F(ScreenStackTest, TheCountIsToldWheneverItChanges) {
    std::vector<int> counts;
    QObject::connect(&sliding_, &ScreenStack::countChanged, &sliding_,
                     [&] { counts.push_back(sliding_.count()); });
    Screen* const screen = presented(ScreenId::SaveData);
    sliding_.dismiss(true);
    sliding_.slidOut(screen);
    EXPECT_EQ(counts, (std::vector<int>{1, 0}));
}

}  // namespace
}  // namespace kestrix::ui
