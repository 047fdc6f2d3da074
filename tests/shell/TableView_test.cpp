// The table that screens share: its cells, how it is scrolled by hand and by keys, its menu, and many rows.
#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QtTest/QTest>

#include "tests/shell/TableScreen.h"
#include "tests/support/EventLoop.h"
#include "tests/support/WindowFixture.h"
#include "ui/Palette.h"

namespace kestrix::shell {
namespace {

class TableView : public testing::WindowFixture {
  protected:
    void openWith(int rows) {
        start();
        TableScreen::registerAs(ui::ScreenId::SaveData, app().screens());
        open();
        app().screens().present(ui::ScreenId::SaveData, false);
        screen_ = static_cast<TableScreen*>(app().screens().topmost());
        fill(rows);
    }
    void fill(int rows) {
        for (int row = 0; row < rows; ++row) {
            screen_->rows.append(
                {.texts = {"row " + QString::number(row), QStringLiteral("text")}, .mark = {}});
        }
        settle();
    }
    TableScreen& tableScreen() { return *screen_; }
    ui::Table& table() { return screen_->table; }
    QQuickItem* row(int number) {
        return testing::findItem(item("table"), QStringLiteral("row%1").arg(number));
    }
    bool isSeen(int number) {
        QQuickItem* const found = row(number);
        return found != nullptr && placeOf("table").contains(placeOf(*found));
    }
    double scrolled() { return item("table").property("contentY").toDouble(); }
    QPoint middleOf(int number) { return pointIn(*row(number)); }
    QQuickItem& part(int number, const char* name) {
        QQuickItem* const found =
            row(number) != nullptr ? testing::findItem(*row(number), QString::fromLatin1(name)) : nullptr;
        if (found == nullptr) ADD_FAILURE() << "row " << number << " has no " << name;
        return found != nullptr ? *found : item("table");
    }
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }

  private:
    TableScreen* screen_ = nullptr;  // belongs to the stack
};

TEST_F(TableView, ManyRowsNeedNoMoreItemsThanAreSeen) {
    openWith(10'000);
    EXPECT_LT(testing::itemsUnder(item("table")).size(), 1500U);
    table().scrollToLastRow();
    settle();
    EXPECT_TRUE(isSeen(9'999));
    EXPECT_LT(testing::itemsUnder(item("table")).size(), 1500U);
    table().setCurrentRow(5'000);
    settle();
    EXPECT_TRUE(isSeen(5'000));
    EXPECT_EQ(part(5'000, "column1").property("text").toString(), QStringLiteral("row 5000"));
}

TEST_F(TableView, TheRowOfTheKeyboardIsShownAndMarked) {
    openWith(30);
    pressKey(Qt::Key_End);
    settle();
    EXPECT_TRUE(isSeen(29));
    EXPECT_TRUE(part(29, "keyboardRow").isVisible());
    pressKey(Qt::Key_Up);
    settle();
    EXPECT_FALSE(part(29, "keyboardRow").isVisible());
    EXPECT_TRUE(part(28, "keyboardRow").isVisible());
    pressKey(Qt::Key_Home);
    settle();
    EXPECT_TRUE(isSeen(0));
    EXPECT_EQ(scrolled(), 0);
    pressKey(Qt::Key_PageDown);
    settle();
    EXPECT_TRUE(isSeen(9));
    EXPECT_TRUE(part(9, "keyboardRow").isVisible());
}

TEST_F(TableView, ARowTallerThanTheTableIsReadToItsEndBeforeTheNextOne) {
    openWith(1);
    tableScreen().rows.append({.texts = {"tall", "text"}, .height = 290, .mark = {}});
    fill(1);
    pressKey(Qt::Key_Home);
    std::vector<int> rows;
    for (int press = 0; press < 8; ++press) {
        pressKey(Qt::Key_Down);
        rows.push_back(table().currentRow());
        settle();
    }
    // 90 of its points are hidden at first, and a press moves by 40.
    EXPECT_EQ(rows, (std::vector<int>{1, 1, 1, 1, 2, 2, 2, 2}));
    EXPECT_TRUE(isSeen(2));
}

TEST_F(TableView, WithoutTheKeyboardNoRowIsMarked) {
    openWith(3);
    table().setCurrentRow(1);
    item("table").setFocus(false);
    settle();
    EXPECT_FALSE(part(1, "keyboardRow").isVisible());
}

TEST_F(TableView, ARowWithSomethingWrongSaysSoToEyesAndScreenReaders) {
    openWith(3);
    EXPECT_FALSE(part(1, "rowMark").isVisible());
    tableScreen().rows.setMark(1, QStringLiteral("Not stored"));
    settle();
    EXPECT_TRUE(part(1, "rowMark").isVisible());
    EXPECT_EQ(part(1, "rowMark").property("text").toString(), QStringLiteral("Not stored"));
    EXPECT_EQ(part(1, "rowGround").property("color").value<QColor>(), ui::Palette::markedRow);
    EXPECT_TRUE(part(1, "rowGround").isVisible());
    EXPECT_FALSE(part(2, "rowGround").isVisible());
    EXPECT_EQ(QAccessible::queryAccessibleInterface(row(1))->text(QAccessible::Name),
              QStringLiteral("Not stored, row 1, text"));
}

TEST_F(TableView, AShortTableHasNoScrollBar) {
    openWith(3);
    EXPECT_FALSE(isShown("tableScrollBar"));
    fill(30);
    EXPECT_TRUE(isShown("tableScrollBar"));
}

TEST_F(TableView, TheScrollBarSaysWhereOneIs) {
    openWith(40);  // four times as many as are seen
    EXPECT_EQ(placeOf("tableScrollThumb").top(), placeOf("tableScrollBar").top());
    EXPECT_NEAR(placeOf("tableScrollThumb").height(), placeOf("tableScrollBar").height() / 4, 1);
    table().scrollToLastRow();
    settle();
    EXPECT_NEAR(placeOf("tableScrollThumb").bottom(), placeOf("tableScrollBar").bottom(), 0.01);
}

TEST_F(TableView, TheScrollBarIsDraggedAndPressed) {
    openWith(40);
    const QRectF bar = placeOf("tableScrollBar");
    QTest::mousePress(&window(), Qt::LeftButton, {}, pointIn(item("tableScrollBar"), {0.5, 0.5}));
    EXPECT_NEAR(scrolled(), 300, 20);
    QTest::mouseMove(&window(), pointIn(item("tableScrollBar"), {0.5, 1}));
    EXPECT_NEAR(scrolled(), 600, 1);
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, pointIn(item("tableScrollBar"), {0.5, 1}));
    EXPECT_TRUE(isSeen(39)) << bar.height();
}

TEST_F(TableView, AFingerScrollsItWhileAnotherRestsElsewhere) {
    openWith(40);
    const QPoint elsewhere = window().contentItem()->mapToScene({20, 500}).toPoint();
    const QPoint from = centreOf("table");
    QTest::touchEvent(&window(), touchScreen()).press(0, elsewhere);
    QTest::touchEvent(&window(), touchScreen()).stationary(0).press(1, from);
    for (int step = 1; step <= 10; ++step)
        QTest::touchEvent(&window(), touchScreen()).stationary(0).move(1, from - QPoint(0, 8 * step));
    EXPECT_GT(scrolled(), 30);
    QTest::touchEvent(&window(), touchScreen()).stationary(0).release(1, from - QPoint(0, 80));
    QTest::touchEvent(&window(), touchScreen()).release(0, elsewhere);
}

TEST_F(TableView, TheOtherMouseButtonOffersToCopyTheRow) {
    openWith(3);
    QGuiApplication::clipboard()->setText(QStringLiteral("the user's own"));
    QTest::mouseClick(&window(), Qt::RightButton, {}, middleOf(1));
    EXPECT_TRUE(isShown("tableRowMenu"));
    EXPECT_EQ(clipboard(), QStringLiteral("the user's own"));
    click("tableCopyRow");
    EXPECT_FALSE(isShown("tableRowMenu"));
    EXPECT_EQ(clipboard(), QStringLiteral("row 1\ttext"));
}

TEST_F(TableView, APressElsewhereOrEscapeClosesTheMenu) {
    openWith(30);
    QGuiApplication::clipboard()->setText(QStringLiteral("the user's own"));
    QTest::mouseClick(&window(), Qt::RightButton, {}, middleOf(1));
    QTest::mouseClick(&window(), Qt::LeftButton, {}, middleOf(8));
    EXPECT_FALSE(isShown("tableRowMenu"));
    QTest::mouseClick(&window(), Qt::RightButton, {}, middleOf(1));
    EXPECT_TRUE(isShown("tableRowMenu"));
    pressKey(Qt::Key_Escape);
    EXPECT_FALSE(isShown("tableRowMenu"));
    EXPECT_EQ(clipboard(), QStringLiteral("the user's own"));
}

TEST_F(TableView, APressBesideTheTableClosesTheMenu) {
    openWith(30);
    const QRectF place = placeOf("table");
    for (const QPointF outside :
         {QPointF(place.center().x(), place.top() - 40), QPointF(place.center().x(), place.bottom() + 40)}) {
        QTest::mouseClick(&window(), Qt::RightButton, {}, middleOf(1));
        EXPECT_TRUE(isShown("tableRowMenu"));
        QTest::mouseClick(&window(), Qt::LeftButton, {}, outside.toPoint());
        EXPECT_FALSE(isShown("tableRowMenu")) << outside.y();
    }
}

TEST_F(TableView, EscapeWithAModifierLeavesTheMenuOpen) {
    openWith(3);
    QTest::mouseClick(&window(), Qt::RightButton, {}, middleOf(1));
    pressKey(Qt::Key_Escape, Qt::ControlModifier);
    EXPECT_TRUE(isShown("tableRowMenu"));
}

TEST_F(TableView, KeysCopyTheRowOfTheKeyboard) {
    openWith(3);
    pressKey(Qt::Key_End);
    pressKey(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), QStringLiteral("row 2\ttext"));
}

}  // namespace
}  // namespace kestrix::shell
