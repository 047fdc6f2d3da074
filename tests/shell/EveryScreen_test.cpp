// What holds for every screen in every state that the tour shows: it can be read, heard, and reached by the
// keyboard. A screen that has its row in the table of screens is looked at here by itself.
#include <set>

#include "apps/kestrix/TourRoad.h"
#include "apps/kestrix/TourStops.h"
#include "shell/Screens.h"
#include "tests/shell/madeup/MadeUpViewController.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

using madeup::MadeUpViewController;
using ui::ScreenId;

// As in the table of screens.
const ScreenRow kMadeUp{
    ScreenId::SaveData,
    "Made up",
    make<MadeUpViewController>,
    "Madeup/MadeUpView.qml",
    {{"made-up"},
     {"made-up-filled",
      [](ui::Screen& screen) {
          auto& made = dynamic_cast<MadeUpViewController&>(screen);
          made.projectName.setText(QStringLiteral("O'Neill & Søn"));
          made.operators.setText(QStringLiteral("ברן"));
      }},
     {"made-up-row-menu",
      [](ui::Screen& screen) { dynamic_cast<MadeUpViewController&>(screen).records.openMenu(1); }},
     {"made-up-notice", [](ui::Screen& screen) { dynamic_cast<MadeUpViewController&>(screen).pressTell(); }},
     {"made-up-alert", [](ui::Screen& screen) { dynamic_cast<MadeUpViewController&>(screen).pressAsk(); }}}};

class EveryScreen : public testing::WindowWalks {
  protected:
    void expectGood(const char* where) { EXPECT_EQ(testing::inLines(allProblems()), "") << where; }
    void expectGoodInAllItsStates(const ScreenRow& row) {
        for (const ScreenStop& stop : row.stops) {
            app().screens().present(row.id, false);
            settle();
            if (stop.prepare != nullptr) stop.prepare(*app().screens().topmost());
            settle();
            keepPictures(stop.name);
            expectGood(stop.name);
            app().screens().dismiss(false);
            app().notice().clear();
            settle();
        }
    }
    void visit(const tour::Stop& stop) {
        app().notice().clear();
        if (stop.tester == tour::Stop::Tester::On) tester().appear();
        if (stop.tester == tour::Stop::Tester::Off) tester().leave();
        if (stop.scenario != nullptr) tester().play(stop.scenario);
        if (stop.disk == tour::Stop::Disk::Full) testing::expectWarning("数据操作失败");
        tour::pressRecord(stop, screen());
        settle();
    }
};

TEST_F(EveryScreen, OfTheApplicationIsGoodAtEveryStopOfTheTour) {
    options_.slideDuration = std::chrono::milliseconds(0);
    open();
    for (const tour::Stop& stop : tour::stops()) {
        visit(stop);
        expectGood(stop.name);
    }
    for (const tour::Step& step : tour::road()) {
        step.take(app());
        settle();
        if (!step.name.empty()) {
            keepPictures(step.name.c_str());
            expectGood(step.name.c_str());
        }
        tour::goHome(app());
        settle();
    }
}

TEST_F(EveryScreen, AmongTheStatesAreAPressThatFailedAndANotice) {
    open();
    int failed = 0;
    int notices = 0;
    for (const tour::Stop& stop : tour::stops()) {
        visit(stop);
        notices += isShown("notice") ? 1 : 0;
        if (stop.disk != tour::Stop::Disk::Full) continue;
        ++failed;
        const int row = screen().dataList()->count() - 1;
        EXPECT_EQ(screen().dataList()->at(row).mark, QStringLiteral("Not stored"));
        QQuickItem& marked = item(QStringLiteral("sessionRow%1").arg(row));
        EXPECT_TRUE(testing::findItem(marked, QStringLiteral("rowMark"))->isVisible());
        EXPECT_FALSE(placeOf(marked).intersects(placeOf("notice"))) << "the row can be seen";
        EXPECT_EQ(app().notice().text(),
                  QStringLiteral("S_%1 was not stored: the disk is full (disk I/O error)").arg(row + 1));
    }
    EXPECT_EQ(failed, 1);
    EXPECT_EQ(notices, 2);
}

TEST_F(EveryScreen, TheMadeUpOneIsGoodInAllItsStates) {
    start();
    registerScreen(kMadeUp, app().screens(), app().services());
    open();
    expectGoodInAllItsStates(kMadeUp);
}

// The walks can fail, and say what a person would say.
TEST_F(EveryScreen, ABadOneIsFound) {
    start();
    app().screens().registerScreen(
        ScreenId::SaveData,
        [this] { return std::make_unique<ui::FramedScreen>(ScreenId::SaveData, app().services()); },
        QUrl(QStringLiteral("qrc:/tests/BadScreen.qml")));
    open();
    app().screens().present(ScreenId::SaveData, false);
    settle();
    const std::string problems = testing::inLines(allProblems());
    for (const char* expected : {"the text 'Save' (#334455) on #303030 has 1.3 : 1, needs 4.5\n",
                                 "the text 'Save' is not found by a screen reader\n",
                                 "the Table 'namelessTable' has no name for a screen reader\n",
                                 "'namelessTable' has the keyboard, but 0 frames show where it is\n"}) {
        EXPECT_NE(problems.find(expected), std::string::npos) << expected << "is not in:\n" << problems;
    }
}

TEST_F(EveryScreen, HasItsRowOnceWithAPictureOfItsOwn) {
    std::set<ScreenId> ids;
    std::set<std::string> pictures;
    for (const tour::Stop& stop : tour::stops()) pictures.insert(stop.name);
    for (const ScreenRow& row : screens()) {
        EXPECT_TRUE(ids.insert(row.id).second) << ui::nameOf(row.id) << " has two rows";
        EXPECT_FALSE(row.stops.empty()) << ui::nameOf(row.id) << " has no stop in the tour";
        for (const ScreenStop& stop : row.stops)
            EXPECT_TRUE(pictures.insert(stop.name).second) << stop.name << " is the name of two pictures";
    }
}

}  // namespace
}  // namespace kestrix::shell
