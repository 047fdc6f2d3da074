// The screens of a test record's measurements: where everything stands, how they are opened and left, and how
// texts of any kind are shown.
#include <QAccessible>
#include <QtTest/QTest>

#include "history/HistoryViewController.h"
#include "storage/Selection.h"
#include "storage/ServiceDao.h"
#include "tests/support/FailingVfs.h"
#include "tests/support/WindowWalks.h"
#include "ui/Palette.h"

namespace kestrix::shell {
namespace {

using ui::ScreenId;

class HistoryScreens : public testing::WindowWalks {
  protected:
    HistoryScreens() {
        vfs_.skipSyncs();
        options_.slideDuration = std::chrono::milliseconds(0);
    }

    storage::MeasureData& add(const std::string& name) {
        storage::MeasureData& measure = measures_.emplace_back();
        measure.dataName = name;
        measure.function = "RCD";
        measure.parameters = "IΔn=30mA,Type Of RCD=AC-G";
        measure.result = "24.3ms,0.4V,L-PE=230V,N-PE=0V,L-N=230V,UL:50V";
        measure.dateTime = "2026-03-04 05:06:07";
        return measure;
    }
    void openHistory(const std::string& project = "Plant A", QSize size = kSmall) {
        open(size);
        storage::ServiceDao dao(app().documents());
        storage::RecordData record;
        record.projectName = project;
        dao.addRecordForm(record);
        storage::selectedRecordId = dao.lastOutcome().identity;
        dao.execSql("BEGIN");
        for (storage::MeasureData& measure : measures_) {
            measure.recordId = storage::selectedRecordId;
            measure.recordName = project;
            dao.addMeasureForm(measure);
        }
        dao.execSql("COMMIT");
        app().screens().present(ScreenId::History, true);
        settle();
    }
    // The live screen behind has parts of the same names.
    QQuickItem& onHistory(const QString& name) {
        QQuickItem* const found = testing::findItem(item("historyView"), name);
        if (found == nullptr) ADD_FAILURE() << "the history has no " << name.toStdString();
        return found != nullptr ? *found : item("historyView");
    }
    QQuickItem& onHistory(const char* name) { return onHistory(QString::fromLatin1(name)); }
    ScreenId shown() { return app().screens().topmost()->id(); }
    QQuickItem& part(const QString& row, const char* name) {
        QQuickItem* const found = testing::findItem(item(row), QString::fromLatin1(name));
        if (found == nullptr) ADD_FAILURE() << row.toStdString() << " has no " << name;
        return found != nullptr ? *found : item(row);
    }
    void expectMeasurementShown(const char* how) {
        settle();
        EXPECT_EQ(shown(), ScreenId::HistoryCell) << how;
        EXPECT_TRUE(isShown("historyCellView")) << how;
        pressKey(Qt::Key_Escape);
        settle();
        EXPECT_EQ(shown(), ScreenId::History) << how;
    }
    void expectNothingSticksOut(const QString& row, int columns) {
        for (int number = 1; number <= columns; ++number) {
            const QQuickItem& cell = part(row, ("column" + std::to_string(number)).c_str());
            EXPECT_LE(cell.property("paintedWidth").toDouble(), cell.width() + 0.01) << number;
            EXPECT_LE(cell.property("paintedHeight").toDouble(), cell.height() + 0.01) << number;
        }
    }

    testing::FailingVfs vfs_;
    std::deque<storage::MeasureData> measures_;
};

TEST_F(HistoryScreens, TheRecordStandsInItsPlaces) {
    add("S_1");
    add("S_2").result = "0.2Ω";
    openHistory();
    EXPECT_EQ(text("historyTitle"), QStringLiteral("Plant A"));
    const double x[] = {0, 51, 96, 158, 219, 270};
    const double width[] = {50, 44, 61, 60, 50, 50};
    const char* roles[] = {"DataName", "Function", "Parameters", "Result", "DateTime", "Comments"};
    EXPECT_EQ(placeOf(onHistory("tableView")), QRectF(0, 74, 320, 568 - 74));
    const QRectF first = placeOf("historyRow0");
    EXPECT_EQ(first.topLeft(), QPointF(0, 74));
    EXPECT_GT(first.height(), 20);
    EXPECT_EQ(placeOf("historyRow1"), QRectF(0, first.bottom(), 320, 20));
    for (int column = 0; column < 6; ++column) {
        const QByteArray header = QByteArray("header") + roles[column];
        EXPECT_EQ(placeOf(onHistory(header.constData())), QRectF(x[column], 45, width[column], 30));
        EXPECT_EQ(
            placeOf(part(QStringLiteral("historyRow0"), ("column" + std::to_string(column + 1)).c_str())),
            QRectF(x[column], 74, width[column], first.height()));
        if (column == 5) continue;
        const QByteArray divider = "headerLine" + QByteArray::number(column);
        EXPECT_EQ(placeOf(divider.constData()), QRectF(x[column] + width[column], 45, 1, 30));
        EXPECT_EQ(item(divider.constData()).property("color").value<QColor>(), QColor(108, 108, 108));
    }
    EXPECT_EQ(part(QStringLiteral("historyRow0"), "column6").property("text").toString(), QString());
}

TEST_F(HistoryScreens, OneLineStandsBetweenTwoRowsAndOneAroundAll) {
    add("S_1");
    add("S_2");
    openHistory();
    const QImage display = onDisplay();
    std::vector<int> lines;
    for (int y = 76; y < 568; ++y) {
        if (display.pixel(300, y) == ui::Palette::tableLine.rgb()) lines.push_back(y);
    }
    const int height = static_cast<int>(placeOf("historyRow0").height());
    EXPECT_EQ(lines, (std::vector<int>{74 + height, 74 + 2 * height - 1}));
    EXPECT_EQ(display.pixel(300, 74), ui::Palette::tableLine.rgb());
}

TEST_F(HistoryScreens, ARowOpensItsMeasurementByFingerMouseEnterAndScreenReader) {
    add("S_1");
    add("S_2");
    openHistory();
    tap("historyRow1");
    settle();
    EXPECT_EQ(part(QStringLiteral("historyCellRow0"), "column2").property("text").toString(),
              QStringLiteral("S_2"));
    expectMeasurementShown("finger");
    click("historyRow0");
    expectMeasurementShown("mouse");
    onHistory("tableView").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Home);
    pressKey(Qt::Key_Return);
    expectMeasurementShown("Return");
    EXPECT_TRUE(onHistory("tableView").hasActiveFocus()) << "the keyboard is where it was";
    pressKey(Qt::Key_Enter, Qt::KeypadModifier);
    expectMeasurementShown("Enter");
    pressByScreenReader("historyRow1");
    expectMeasurementShown("screen reader");
    pressKey(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(shown(), ScreenId::History);
}

TEST_F(HistoryScreens, AFingerThatScrollsChoosesNothing) {
    for (int number = 1; number <= 30; ++number) add("S_" + std::to_string(number));
    openHistory();
    const QPoint from = pointIn(onHistory("tableView"));
    QTest::touchEvent(&window(), touchScreen()).press(0, from);
    for (int step = 1; step <= 10; ++step)
        QTest::touchEvent(&window(), touchScreen()).move(0, from - QPoint(0, 12 * step));
    QTest::touchEvent(&window(), touchScreen()).release(0, from - QPoint(0, 120));
    settle();
    EXPECT_EQ(shown(), ScreenId::History);
    EXPECT_GT(onHistory("tableView").property("contentY").toDouble(), 20);
}

TEST_F(HistoryScreens, OnlyRowsThatCanBeChosenSayThatTheyCanBePressed) {
    add("S_1");
    openHistory();
    const auto canBePressed = [this](const char* row) {
        return QAccessible::queryAccessibleInterface(&item(row))
            ->actionInterface()
            ->actionNames()
            .contains(QAccessibleActionInterface::pressAction());
    };
    EXPECT_TRUE(canBePressed("historyRow0"));
    tap("historyRow0");
    settle();
    EXPECT_FALSE(canBePressed("historyCellRow0"));
}

TEST_F(HistoryScreens, TheMeasurementStandsInItsPlaces) {
    add("S_1");
    for (const QSize size : {QSize(320, 480), QSize(320, 568)}) {
        openHistory("Plant A", size);
        tap("historyRow0");
        settle();
        const double height = size.height() == 480 ? 72 : 87;
        EXPECT_EQ(text("screenTitle"), QStringLiteral("Plant A"));
        EXPECT_EQ(placeOf("screenTitle").size(), QSizeF(60, 44));
        EXPECT_EQ(placeOf("screenTitle").center().x(), 160);
        for (int row = 0; row < 6; ++row) {
            const QString name = QStringLiteral("historyCellRow%1").arg(row);
            const double y = 46 + row * height;
            EXPECT_EQ(placeOf(item(name)), QRectF(0, y, 320, height));
            EXPECT_EQ(placeOf(part(name, "column1")), QRectF(0, y, 70, height));
            EXPECT_EQ(placeOf(part(name, "column2")), QRectF(80, y, 235, height));
            EXPECT_EQ(part(name, "column1").property("font").value<QFont>().pixelSize(), 12);
            EXPECT_EQ(part(name, "column2").property("horizontalAlignment").toInt(), Qt::AlignLeft);
        }
        EXPECT_FALSE(
            testing::findItem(item("historyCellView"), QStringLiteral("tableViewScrollBar"))->isVisible());
        stop();
    }
}

TEST_F(HistoryScreens, TheMeasurementFollowsTheWindow) {
    add("S_1");
    openHistory();
    tap("historyRow0");
    settle();
    resize({640, 1300});
    EXPECT_EQ(placeOf("historyCellRow5"), QRectF(0, 46 + 5 * 101, 320, 101));
    EXPECT_FALSE(
        testing::findItem(item("historyCellView"), QStringLiteral("tableViewScrollBar"))->isVisible())
        << "a rounding is nothing to scroll for";
}

TEST_F(HistoryScreens, TextsOfAnyKindStayInTheirPlaces) {
    const std::string longText(100'000, 'W');
    add("S_1").result = longText;
    storage::MeasureData& strange =
        add("👷🏽👷🏽👷🏽👷🏽👷🏽👷🏽👷🏽👷🏽👷🏽👷🏽");
    strange.function = "בדיקת בידוד של לוח ראשי";
    strange.parameters = "'; DROP TABLE \"x\" -- <b>bold</b> %1 &amp;";
    strange.result = "שלום עולם, 230V";
    strange.dateTime = longText;
    openHistory("בית ספר " + longText);
    EXPECT_EQ(placeOf("historyRow0").height(), 400);
    expectNothingSticksOut(QStringLiteral("historyRow0"), 6);
    expectNothingSticksOut(QStringLiteral("historyRow1"), 6);
    EXPECT_LE(testing::textOf(item("historyTitle")).property("paintedWidth").toDouble(), 224);
    EXPECT_EQ(part(QStringLiteral("historyRow1"), "column3").property("textFormat").toInt(), Qt::PlainText);
    for (const char* row : {"historyRow0", "historyRow1"}) {
        tap(row);
        settle();
        for (int number = 0; number < 6; ++number)
            expectNothingSticksOut(QStringLiteral("historyCellRow%1").arg(number), 2);
        EXPECT_LE(testing::textOf(item("screenTitle")).property("paintedWidth").toDouble(), 224);
        pressKey(Qt::Key_Escape);
        settle();
    }
}

TEST_F(HistoryScreens, AnEmptyRecordSaysSoBelowTheTitlesOfItsColumns) {
    openHistory();
    EXPECT_TRUE(onHistory("tableViewEmptyText").isVisible());
    EXPECT_EQ(text("historyTitle"), QStringLiteral("History"));
    EXPECT_TRUE(placeOf(onHistory("tableView")).contains(placeOf(onHistory("tableViewEmptyText"))));
    EXPECT_TRUE(onHistory("headerComments").isVisible());
}

TEST_F(HistoryScreens, TheShareButtonShowsTheExportMenuAndEscapeTakesItAway) {
    add("S_1");
    openHistory();
    EXPECT_EQ(placeOf("btnShare"), QRectF(274, 0, 44, 43));
    tap("btnShare");
    settle();
    EXPECT_TRUE(isShown("buttonMenu"));
    tap("historyRow0");
    EXPECT_EQ(shown(), ScreenId::History) << "nothing behind it is touched";
    pressKey(Qt::Key_Escape);
    settle();
    EXPECT_FALSE(isShown("buttonMenu"));
    tap("btnShare");
    settle();
    click("menuButtonExport to PDF");
    settle();
    EXPECT_FALSE(isShown("buttonMenu"));
    EXPECT_EQ(app().alerts().text(), QStringLiteral("Save the file success"));
    EXPECT_FALSE(app().notice().isShown()) << "not before the alert has been seen";
    scheduler_.advance(std::chrono::minutes(1));
    click("alertButton0");
    settle();
    EXPECT_TRUE(app().notice().text().startsWith(QStringLiteral("Saved as ")));
    EXPECT_EQ(shown(), ScreenId::History);
    click("btnBack");
    settle();
    EXPECT_EQ(app().screens().count(), 0);
}

TEST_F(HistoryScreens, ManyMeasurementsNeedNoMoreItemsThanAreSeen) {
    for (int number = 1; number <= 10'000; ++number) add("S_" + std::to_string(number));
    openHistory();
    EXPECT_LT(testing::itemsUnder(onHistory("tableView")).size(), 1500U);
    onHistory("tableView").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_End);
    settle();
    EXPECT_NEAR(placeOf("historyRow9999").bottom(), 568, 0.01);
    EXPECT_LT(testing::itemsUnder(onHistory("tableView")).size(), 1500U);
}

}  // namespace
}  // namespace kestrix::shell
