#include "ui/Table.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

#include <vector>

#include "tests/support/LogExpectations.h"
#include "tests/ui/TestScreen.h"
#include "ui/Palette.h"

namespace kestrix::ui {
namespace {

const Columns kTwoColumns{{QStringLiteral("Name"), QStringLiteral("Name of it"), 0, 50},
                          {QStringLiteral("Result"), QStringLiteral("Its result"), 51, 60}};

class TableTest : public ::testing::Test {
  protected:
    void fill(int rows) {
        for (int row = 1; row <= rows; ++row)
            list_.append({.texts = {"S_" + QString::number(row), QStringLiteral(" ")}, .mark = {}});
    }
    // The row at which the keyboard is after the key.
    int after(int key, double pageHeight = 100) {
        EXPECT_TRUE(table_.pressKey(key, Qt::NoModifier, false, pageHeight));
        return table_.currentRow();
    }
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }

    TestScreen screen_;
    ListModel list_{kTwoColumns};
    Table table_{screen_, "table", list_};
};

TEST_F(TableTest, HasAHeaderOverEachColumnWhichTheScreenFindsByName) {
    ASSERT_EQ(table_.headers().size(), 2);
    EXPECT_EQ(screen_.label(QStringLiteral("headerName")), table_.headers().first());
    EXPECT_EQ(table_.headers().last()->text(), QStringLiteral("Its result"));
    EXPECT_EQ(table_.headers().last()->backgroundColor(), Palette::header);
}

TEST_F(TableTest, TheScreenFindsItByName) {
    EXPECT_EQ(screen_.table(QStringLiteral("table")), &table_);
    testing::expectWarning("has no kestrix::ui::Table named 'headerName'");
    EXPECT_EQ(screen_.table(QStringLiteral("headerName")), nullptr);
}

TEST_F(TableTest, GivesTheViewItsColumnsAndRows) {
    ASSERT_EQ(table_.columns().size(), 2);
    const auto second = table_.columns().last().value<Column>();
    EXPECT_EQ(second.x, 51);
    EXPECT_EQ(second.width, 60);
    EXPECT_EQ(table_.rows(), &list_);
}

TEST_F(TableTest, TheKeyboardComesToItsNewestRow) {
    fill(5);
    EXPECT_EQ(table_.currentRow(), -1);
    EXPECT_EQ(after(Qt::Key_Down), 4);
}

TEST_F(TableTest, ArrowsGoFromRowToRowAndStopAtTheEnds) {
    fill(3);
    EXPECT_EQ(after(Qt::Key_Home), 0);
    EXPECT_EQ(after(Qt::Key_Up), 0);
    EXPECT_EQ(after(Qt::Key_Down), 1);
    EXPECT_EQ(after(Qt::Key_Down), 2);
    EXPECT_EQ(after(Qt::Key_Down), 2);
    EXPECT_EQ(after(Qt::Key_Up), 1);
    EXPECT_EQ(after(Qt::Key_End), 2);
}

TEST_F(TableTest, AHeldArrowGoesOn) {
    fill(3);
    after(Qt::Key_Home);
    table_.pressKey(Qt::Key_Down, Qt::NoModifier, true, 100);
    EXPECT_EQ(table_.currentRow(), 1);
}

TEST_F(TableTest, APageIsAsManyRowsAsAreSeenAtOnce) {
    fill(20);  // of 20 points each
    EXPECT_EQ(after(Qt::Key_Home), 0);
    EXPECT_EQ(after(Qt::Key_PageDown, 100), 4);
    EXPECT_EQ(after(Qt::Key_PageDown, 100), 8);
    EXPECT_EQ(after(Qt::Key_PageUp, 60), 6);
    EXPECT_EQ(after(Qt::Key_PageUp, 1), 5) << "a page lower than a row is still one row";
    EXPECT_EQ(after(Qt::Key_PageUp, 1000), 0);
}

TEST_F(TableTest, WithoutRowsKeysLeaveItAtNone) {
    for (const int key :
         {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End})
        EXPECT_EQ(after(key), -1) << key;
}

TEST_F(TableTest, KeysOfOthersAndKeysWithModifiersAreLeftToThem) {
    fill(3);
    EXPECT_FALSE(table_.pressKey(Qt::Key_Space, Qt::NoModifier, false, 100));
    EXPECT_FALSE(table_.pressKey(Qt::Key_Up, Qt::ControlModifier, false, 100));
    EXPECT_FALSE(table_.pressKey(Qt::Key_C, Qt::NoModifier, false, 100));
    EXPECT_EQ(table_.currentRow(), -1);
}

TEST_F(TableTest, CtrlCCopiesTheRowOfTheKeyboardWithTabsBetweenItsTexts) {
    list_.append({.texts = {QStringLiteral("S_1"), QStringLiteral("1V,2A ")}, .mark = {}});
    list_.append({.texts = {QStringLiteral("S_2"), QStringLiteral(" ")}, .mark = {}});
    after(Qt::Key_Home);
    EXPECT_TRUE(table_.pressKey(Qt::Key_C, Qt::ControlModifier, false, 100));
    EXPECT_EQ(clipboard(), QStringLiteral("S_1\t1V,2A"));
    after(Qt::Key_Down);
    EXPECT_TRUE(table_.pressKey(Qt::Key_Insert, Qt::ControlModifier, false, 100));
    EXPECT_EQ(clipboard(), QStringLiteral("S_2\t"));
}

TEST_F(TableTest, WithoutARowNothingIsCopied) {
    QGuiApplication::clipboard()->setText(QStringLiteral("the user's own"));
    EXPECT_TRUE(table_.pressKey(Qt::Key_C, Qt::ControlModifier, false, 100));
    table_.copyRow(7);
    EXPECT_EQ(clipboard(), QStringLiteral("the user's own"));
}

TEST_F(TableTest, TheMenuCopiesItsRowAndOpensForNoneThatIsNotThere) {
    fill(3);
    table_.openMenu(3);
    EXPECT_EQ(table_.menuRow(), -1);
    table_.openMenu(1);
    table_.chooseEntry(0);
    EXPECT_EQ(clipboard(), QStringLiteral("S_2\t"));
    EXPECT_EQ(table_.menuRow(), -1);
    table_.openMenu(1);
    list_.removeAll();
    EXPECT_EQ(table_.menuRow(), -1);
}

TEST_F(TableTest, ARowIsDeletedByKeyAndFromItsMenuWhereThatWasSet) {
    fill(3);
    table_.setCurrentRow(2);
    EXPECT_FALSE(table_.pressKey(Qt::Key_Delete, Qt::NoModifier, false, 100));
    EXPECT_EQ(table_.menuEntries().size(), 1);
    std::vector<int> deleted;
    table_.setDeletion(QStringLiteral("Delete"), [this, &deleted](int row) {
        deleted.push_back(row);
        list_.remove(row);
    });
    EXPECT_TRUE(table_.pressKey(Qt::Key_Delete, Qt::NoModifier, false, 100));
    EXPECT_EQ(table_.currentRow(), 1) << "at the last one that is left";
    EXPECT_EQ(table_.menuEntries().last(), QStringLiteral("Delete"));
    table_.openMenu(0);
    table_.chooseEntry(1);
    EXPECT_EQ(deleted, (std::vector<int>{2, 0}));
    table_.pressKey(Qt::Key_Delete, Qt::NoModifier, false, 100);
    table_.pressKey(Qt::Key_Delete, Qt::NoModifier, false, 100);
    EXPECT_EQ(deleted, (std::vector<int>{2, 0, 0})) << "none is left";
}

TEST_F(TableTest, ARowTallerThanThePageIsReadOnBeforeTheNext) {
    fill(1);
    list_.append({.texts = {"tall", " "}, .height = 200, .mark = {}});
    fill(1);
    std::vector<double> scrolls;
    QObject::connect(&table_, &Table::scrollAsked, &screen_, [&](double by) { scrolls.push_back(by); });
    table_.setCurrentRow(1);
    const auto press = [this](int key, double above, double below) {
        table_.pressKey(key, Qt::NoModifier, false, 100, above, below);
        return table_.currentRow();
    };
    EXPECT_EQ(press(Qt::Key_Down, 0, 100), 1);
    EXPECT_EQ(press(Qt::Key_Up, 15, 85), 1);
    EXPECT_EQ(scrolls, (std::vector<double>{40, -15}));
    EXPECT_EQ(press(Qt::Key_Up, 0, 100), 0);
    EXPECT_EQ(press(Qt::Key_Down, 50, 50), 1) << "a row that fits is not read on";
    EXPECT_EQ(press(Qt::Key_Down, 100, 0), 2);
}

TEST_F(TableTest, WhenItIsEmptiedTheKeyboardIsAtNoRow) {
    fill(3);
    after(Qt::Key_Home);
    const SignalCount told(table_, &Table::currentRowChanged);
    list_.removeAll();
    EXPECT_EQ(table_.currentRow(), -1);
    EXPECT_EQ(told(), 1);
}

}  // namespace
}  // namespace kestrix::ui
