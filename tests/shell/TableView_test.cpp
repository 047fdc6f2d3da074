// The table that screens share: its cells, how it is scrolled by hand and by keys, its menu, and many rows.
#include <QAccessible>
#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QStyleHints>
#include <QtTest/QTest>

#include "tests/shell/TableScreen.h"
#include "tests/support/Contrast.h"
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

TEST_F(TableView, ALongHeaderIsDrawnSmallerAndNeverOverTheNextColumn) {
    openWith(1);
    for (ui::Label* header : table().headers()) {
        const QString name = header->objectName();
        const double width = placeOf(name.toUtf8().constData()).width();
        const auto drawn = [&](const QString& title) -> QQuickItem& {
            header->setText(title);
            settle();
            return testing::textOf(item(name.toUtf8().constData()));
        };
        const auto drawnWidth = [](const QQuickItem& text) {
            return text.property("contentWidth").toDouble();
        };
        // A little too wide at its own size.
        QFont font(header->fontFamily());
        font.setPixelSize(header->fontSize());
        QString title;
        while (QFontMetricsF(font).horizontalAdvance(title) <= width) title += u'n';
        QQuickItem& smaller = drawn(title);
        EXPECT_LE(drawnWidth(smaller), width) << name.toStdString();
        EXPECT_FALSE(smaller.property("truncated").toBool()) << name.toStdString();
        // Far too wide at any size.
        EXPECT_LE(drawnWidth(drawn(title.repeated(5))), width) << name.toStdString();
        EXPECT_TRUE(smaller.property("truncated").toBool()) << name.toStdString();
    }
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

TEST_F(TableView, TheMarkOfARowHasAPlaceOfItsOwn) {
    openWith(1);
    for (const char* text :
         {"text", "", " ", "a text that needs all of its column, and another line beside it"}) {
        tableScreen().rows.removeAll();
        tableScreen().rows.append({.texts = {"row", text}, .mark = QStringLiteral("Not stored")});
        settle();
        const auto glyphs = [this](const char* name) {
            return part(0, name).mapRectToScene(testing::paintedRect(part(0, name)));
        };
        const QRectF place = part(0, "rowMark").mapRectToScene(QRectF({}, part(0, "rowMark").size()));
        EXPECT_TRUE(place.contains(glyphs("rowMark"))) << text;
        const bool blank = QString::fromLatin1(text).trimmed().isEmpty();
        EXPECT_TRUE(blank || !place.intersects(glyphs("column2"))) << text;
        EXPECT_EQ(part(0, "rowMark").width() == 219, blank) << text << ": a blank one gives up its column";
        if (QByteArray(text) == "text") {
            EXPECT_NEAR(placeOf(part(0, "column2")).center().x(), 101 + 219 / 2.0, 0.01)
                << "one that has room stays in the middle";
        }
        EXPECT_FALSE(part(0, "rowMark").property("truncated").toBool()) << text;
    }
}

// One that comes by Tab has no row yet: a screen reader says the table, and then the row that a key goes to.
TEST_F(TableView, ItHasTheKeyboardItselfUntilAKeyGoesToARow) {
    openWith(30);
    EXPECT_EQ(focused(), "table");
    EXPECT_FALSE(part(0, "keyboardRow").isVisible());
    pressKey(Qt::Key_Down);
    EXPECT_EQ(focused(), "row29");
    pressKey(Qt::Key_Up);
    EXPECT_EQ(focused(), "row28");
    const auto isAt = [this](int number) {
        return QAccessible::queryAccessibleInterface(row(number))->state().focused != 0;
    };
    EXPECT_TRUE(isAt(28));
    EXPECT_FALSE(isAt(29));
    item("table").setFocus(false);
    item("table").forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(focused(), "row28");  // where it was
    tableScreen().rows.removeAll();
    fill(3);
    EXPECT_EQ(focused(), "table");
    EXPECT_EQ(item("table").property("currentIndex").toInt(), -1);
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

// A finger has the bar until it is lifted, whatever others do meanwhile.
TEST_F(TableView, TheScrollBarFollowsOneFingerBesideOthers) {
    openWith(40);
    const auto onBar = [this](double part) { return pointIn(item("tableScrollBar"), {0.5, part}); };
    const QPoint elsewhere = window().contentItem()->mapToScene({20, 500}).toPoint();
    auto fingers = QTest::touchEvent(&window(), touchScreen(), false);
    fingers.press(0, elsewhere).commit();
    fingers.stationary(0).press(1, onBar(0.5)).commit();
    EXPECT_NEAR(scrolled(), 300, 20);
    fingers.stationary(0).stationary(1).press(2, onBar(0.1)).commit();
    EXPECT_NEAR(scrolled(), 300, 20);
    fingers.stationary(0).move(1, onBar(0.75)).move(2, onBar(0.2)).commit();
    EXPECT_NEAR(scrolled(), 450, 20);
    fingers.stationary(0).move(1, onBar(1)).release(2, onBar(0.2)).commit();
    EXPECT_NEAR(scrolled(), 600, 1);
    fingers.release(0, elsewhere).release(1, onBar(1)).commit();
    // Afterwards a finger scrolls the list as ever.
    const QPoint from = centreOf("table");
    fingers.press(3, from).commit();
    for (int step = 1; step <= 10; ++step) fingers.move(3, from + QPoint(0, 8 * step)).commit();
    EXPECT_LT(scrolled(), 570);
    fingers.release(3, from + QPoint(0, 80)).commit();
}

TEST_F(TableView, TheScrollBarStandsOutFromItsGroundAndFromTheHeaders) {
    openWith(40);
    tableScreen().rows.setMark(20, QStringLiteral("Not stored"));
    const QImage drawn = onDisplay();
    const auto pixelAt = [&](double y) {
        const QRect bar = pixelsOf(placeOf("tableScrollBar"));
        return drawn.pixel(bar.center().x(), bar.top() + static_cast<int>(y * bar.height()));
    };
    const QRgb thumb = pixelAt(0.12);
    EXPECT_EQ(QColor(thumb), ui::Palette::scrollThumb);
    for (int tenth = 4; tenth < 10; ++tenth) EXPECT_GE(testing::contrast(thumb, pixelAt(tenth / 10.0)), 3);
    EXPECT_GE(testing::contrast(thumb, ui::Palette::header.rgb()), 2.5);
}

TEST_F(TableView, TheMenuStandsBesideItsRowWhoeverOpensIt) {
    openWith(3);
    table().openMenu(1);
    settle();
    const QRectF menu = placeOf("tableCopyRow");
    EXPECT_EQ(menu.bottom(), placeOf(*row(1)).top());
    EXPECT_NEAR(menu.right(), 160, 0.01);
}

TEST_F(TableView, ALongTouchOffersToCopyTheRow) {
    openWith(30);
    const int usual = QGuiApplication::styleHints()->mousePressAndHoldInterval();
    const auto touch = [this](QPoint at) {
        QTest::touchEvent(&window(), touchScreen()).press(0, at);
        return [this, at] { QTest::touchEvent(&window(), touchScreen()).release(0, at); };
    };
    touch(middleOf(2))();
    EXPECT_FALSE(isShown("tableRowMenu")) << "a short one only touches";
    QGuiApplication::styleHints()->setMousePressAndHoldInterval(1);
    const auto lift = touch(middleOf(1));
    EXPECT_TRUE(testing::spinUntil([this] { return isShown("tableRowMenu"); }));
    lift();
    EXPECT_TRUE(isShown("tableRowMenu")) << "the finger that opened it is lifted";
    tap("tableCopyRow");
    EXPECT_EQ(clipboard(), QStringLiteral("row 1\ttext"));
    QGuiApplication::styleHints()->setMousePressAndHoldInterval(usual);
}

TEST_F(TableView, ALongTouchOfTheScrollBarIsNoneOfTheRowBehindIt) {
    openWith(30);
    const int usual = QGuiApplication::styleHints()->mousePressAndHoldInterval();
    QGuiApplication::styleHints()->setMousePressAndHoldInterval(1);
    std::vector<int> opened;
    QObject::connect(&table(), &ui::Table::menuRowChanged, &table(),
                     [&] { opened.push_back(table().menuRow()); });
    const QPoint onBar = pointIn(item("tableScrollBar"), {0.5, 0.02});
    auto fingers = QTest::touchEvent(&window(), touchScreen(), false);
    fingers.press(0, onBar).commit();
    fingers.stationary(0).press(1, middleOf(4)).commit();
    EXPECT_TRUE(testing::spinUntil([&] { return !opened.empty() && opened.back() == 4; }));
    EXPECT_EQ(opened, std::vector<int>{4});
    fingers.release(0, onBar).release(1, middleOf(4)).commit();
    QGuiApplication::styleHints()->setMousePressAndHoldInterval(usual);
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
