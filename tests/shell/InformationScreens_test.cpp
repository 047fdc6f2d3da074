// The information screens in the window: the ways to them, their places, and how they are scrolled.
#include <QAccessible>
#include <QCoreApplication>
#include <QWheelEvent>
#include <QtTest/QTest>

#include "shell/ProductContent.h"
#include "tests/support/EventLoop.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

using ui::ScreenId;

class InformationScreens : public testing::WindowWalks {
  protected:
    InformationScreens() {
        options_.slideDuration = std::chrono::milliseconds(0);
        options_.openAddress = [this](const QString& address) {
            opened_.push_back(address);
            return opens_;
        };
    }
    void show(ScreenId id, QSize size = kSmall) {
        open(size);
        app().screens().present(id, false);
        settle();
    }
    void showMenu() {
        open();
        click("Leftbtn");
        settle();
    }
    // The name of the screen in front; the live screen has none.
    std::string shown() {
        const ui::Screen* const top = app().screens().topmost();
        return top != nullptr ? ui::nameOf(top->id()) : "";
    }
    double scrolled() { return item("scrollView").property("contentY").toDouble(); }
    void wheel(int angle) {
        const QPointF at = centreOf("scrollView");
        QWheelEvent event(at, window().mapToGlobal(at), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&window(), &event);
    }

    std::vector<QString> opened_;
    bool opens_ = true;
};

TEST_F(InformationScreens, TheMenusRowsLeadToHelpAndAbout) {
    showMenu();
    click("menuRow0");
    settle();
    ASSERT_EQ(app().screens().count(), 1);
    EXPECT_EQ(shown(), "Help");
    click("btnBack");
    settle();
    tap("menuRow1");
    settle();
    ASSERT_EQ(app().screens().count(), 1);
    EXPECT_EQ(shown(), "About");
    EXPECT_FALSE(app().notice().isShown());
}

TEST_F(InformationScreens, EachHasItsTitleAndTheBackButtonsPictureInItsPlace) {
    open();
    for (const auto& [id, title] :
         {std::pair(ScreenId::Help, "Help"),
          std::pair(ScreenId::BluetoothConnectionHelp, "Bluetooth Connection"),
          std::pair(ScreenId::SafetyTips, "Safety Tips"), std::pair(ScreenId::HowtoUse, "How to Use"),
          std::pair(ScreenId::About, "About"), std::pair(ScreenId::MoreApps, "More Apps")}) {
        app().screens().present(id, false);
        settle();
        EXPECT_EQ(text("screenTitle"), QLatin1String(title));
        bool found = false;
        for (QQuickItem* inside : testing::itemsUnder(item("btnBack"))) {
            if (inside->property("source").toUrl().isEmpty()) continue;
            EXPECT_EQ(placeOf(*inside), QRectF(10, 10, 30, 30)) << title;
            found = true;
        }
        EXPECT_TRUE(found) << title;
        app().screens().dismiss(false);
        settle();
    }
}

TEST_F(InformationScreens, TheMenuHasNoRowForMoreApps) {
    showMenu();
    for (int row = 0; row < 2; ++row) EXPECT_TRUE(isShown(QStringLiteral("menuRow%1").arg(row).toUtf8()));
    EXPECT_FALSE(isShown("menuRow2"));
    EXPECT_EQ(app().viewController().leftSideBarViewController().dataList().size(), 2);
}

TEST_F(InformationScreens, HelpLeadsOnAndBackAgainByMouseFingerAndKeys) {
    show(ScreenId::Help);
    click("btnBluetooth");
    settle();
    EXPECT_EQ(shown(), "BluetoothConnectionHelp");
    pressKey(Qt::Key_Escape);
    settle();
    tap("btnSafety");
    settle();
    EXPECT_EQ(shown(), "SafetyTips");
    pressKey(Qt::Key_Back);
    settle();
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "btnBluetooth");
    pressKey(Qt::Key_Return);
    settle();
    EXPECT_EQ(shown(), "BluetoothConnectionHelp");
    pressKey(Qt::Key_Escape);
    settle();
    pressByScreenReader("btnSafety");
    settle();
    EXPECT_EQ(shown(), "SafetyTips");
}

TEST_F(InformationScreens, AFingerThatLeavesAButtonOfHelpPressesNothing) {
    show(ScreenId::Help);
    pressMouse("btnSafety");
    EXPECT_EQ(app().screens().count(), 1) << "not before it is lifted";
    releaseMouse({300, 500});
    settle();
    EXPECT_EQ(app().screens().count(), 1);
}

TEST_F(InformationScreens, HelpsButtonsStandWhereTheyAreGiven) {
    show(ScreenId::Help);
    EXPECT_EQ(placeOf("btnBluetooth"), QRectF(20, 100, 280, 40));
    EXPECT_EQ(placeOf("btnSafety"), QRectF(20, 180, 280, 40));
}

TEST_F(InformationScreens, TheLiveScreensHelpOpensTheBluetoothHelp) {
    open();
    click("btnHelp");
    settle();
    ASSERT_EQ(app().screens().count(), 1);
    EXPECT_EQ(shown(), "BluetoothConnectionHelp");
    EXPECT_EQ(text("screenTitle"), QStringLiteral("Bluetooth Connection"));
}

TEST_F(InformationScreens, TheBluetoothHelpsTextIsSeenWholeInTheLowestWindow) {
    show(ScreenId::BluetoothConnectionHelp, {320, 480});
    pressKey(Qt::Key_End);
    settle();
    const QRectF text = placeOf("text0");
    EXPECT_EQ(text.width(), 260);
    const auto* const words = testing::itemsUnder(item("text0")).back();
    EXPECT_LE(words->property("contentHeight").toDouble(), text.height());
    EXPECT_GE(text.top(), 50);
    EXPECT_LE(text.bottom(), 480);
}

TEST_F(InformationScreens, ThePagesBeginAt50AndTheirPicturesScrollWithThem) {
    show(ScreenId::SafetyTips);
    EXPECT_EQ(placeOf("scrollView"), QRectF(0, 50, 320, 518));
    EXPECT_EQ(placeOf("picture1"), QRectF(8, 251, 304, 124));
    pressKey(Qt::Key_Down);
    settle();
    EXPECT_EQ(placeOf("picture1"), QRectF(8, 211, 304, 124));
}

TEST_F(InformationScreens, KeysScrollAPageWhereverTheKeyboardIs) {
    for (const int tabs : {0, 1, 2}) {  // nowhere, the back button, the page itself
        show(ScreenId::SafetyTips);
        for (int tab = 0; tab < tabs; ++tab) pressKey(Qt::Key_Tab);
        pressKey(Qt::Key_PageDown);
        EXPECT_EQ(scrolled(), 478) << tabs;
        pressKey(Qt::Key_End);
        EXPECT_EQ(scrolled(), 1180 - 518) << tabs;
        pressKey(Qt::Key_Up);
        EXPECT_EQ(scrolled(), 1180 - 518 - 40) << tabs;
        pressKey(Qt::Key_Home);
        EXPECT_EQ(scrolled(), 0) << tabs;
        app().screens().dismiss(false);
        settle();
    }
}

TEST_F(InformationScreens, AFingerScrollsAPage) {
    show(ScreenId::HowtoUse);
    const QPoint from = centreOf("scrollView");
    QTest::touchEvent(&window(), touchScreen()).press(0, from);
    for (int step = 1; step <= 10; ++step)
        QTest::touchEvent(&window(), touchScreen()).move(0, from - QPoint(0, 15 * step));
    EXPECT_GT(scrolled(), 80);
    QTest::touchEvent(&window(), touchScreen()).release(0, from - QPoint(0, 150));
    EXPECT_EQ(shown(), "HowtoUse");
}

TEST_F(InformationScreens, TheWheelScrollsAPage) {
    show(ScreenId::HowtoUse);
    wheel(-240);
    EXPECT_TRUE(testing::spinUntil([this] { return scrolled() > 20; }));
}

TEST_F(InformationScreens, TheScrollBarScrollsAPageAndSaysWhereOneIs) {
    show(ScreenId::SafetyTips);
    const QRectF bar = placeOf("scrollViewScrollBar");
    EXPECT_NEAR(placeOf("scrollViewScrollThumb").height(), bar.height() * 518 / 1180, 1);
    QTest::mousePress(&window(), Qt::LeftButton, {}, pointIn(item("scrollViewScrollBar"), {0.5, 0.99}));
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, pointIn(item("scrollViewScrollBar"), {0.5, 0.99}));
    settle();
    EXPECT_GT(scrolled(), 640);
    EXPECT_NEAR(placeOf("scrollViewScrollThumb").bottom(), bar.bottom(), 3);
}

TEST_F(InformationScreens, WhereAPageIsScrolledToStaysWithinItInAWindowThatGrows) {
    show(ScreenId::BluetoothConnectionHelp, {320, 480});
    pressKey(Qt::Key_End);
    resize({320, 900});
    EXPECT_EQ(scrolled(), 0);
    EXPECT_FALSE(isShown("scrollViewScrollBar"));
}

TEST_F(InformationScreens, AScreenReaderHearsWhatThePicturesTell) {
    show(ScreenId::SafetyTips);
    for (int picture = 0; picture < 5; ++picture) {
        QAccessibleInterface* const told =
            QAccessible::queryAccessibleInterface(&item(QStringLiteral("picture%1").arg(picture)));
        ASSERT_NE(told, nullptr) << picture;
        EXPECT_EQ(told->role(), QAccessible::Graphic) << picture;
        EXPECT_GT(told->text(QAccessible::Name).size(), 10) << picture;
        EXPECT_GT(told->text(QAccessible::Description).size(), 100) << picture;
    }
}

TEST_F(InformationScreens, AboutStandsInItsPlacesAndOpensTheMakersPage) {
    show(ScreenId::About);
    EXPECT_EQ(text("lblVersion"), QStringLiteral("Version\uff1a1.0"));
    EXPECT_EQ(placeOf("btnURL"), QRectF(60, 170, 200, 25));
    const QString address = productContent().webAddress;
    click("btnURL");
    tap("btnURL");
    pressKey(Qt::Key_Tab);
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "btnURL");
    pressKey(Qt::Key_Space);
    pressByScreenReader("btnURL");
    EXPECT_EQ(opened_, std::vector<QString>(4, address));
    EXPECT_FALSE(app().notice().isShown());
}

TEST_F(InformationScreens, WithoutABrowserTheAddressIsSaid) {
    opens_ = false;
    show(ScreenId::About);
    click("btnURL");
    settle();
    EXPECT_TRUE(isShown("notice"));
    EXPECT_EQ(app().notice().text(), QStringLiteral("No browser opens ") + productContent().webAddress);
}

TEST_F(InformationScreens, ARowOfMoreAppsOpensItsPageByMouseFingerKeysAndScreenReader) {
    show(ScreenId::MoreApps);
    for (int row = 0; row < 3; ++row) {
        const QByteArray name = "appRow" + QByteArray::number(row);
        EXPECT_EQ(placeOf(name.constData()), QRectF(0, 46 + 60 * row, 320, 60));
    }
    click("appRow0");
    tap("appRow1");
    for (int tab = 0; tab < 4; ++tab) pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "appRow2");
    pressKey(Qt::Key_Return, Qt::ControlModifier);
    pressKey(Qt::Key_Return);
    pressByScreenReader("appRow0");
    const auto apps = productContent().applications;
    EXPECT_EQ(opened_,
              (std::vector<QString>{apps[0].address, apps[1].address, apps[2].address, apps[0].address}));
}

}  // namespace
}  // namespace kestrix::shell
