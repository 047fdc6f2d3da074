// The list of this session's measurements: its rows, their cells and lines, and how it scrolls.
#include <QRegularExpression>
#include <QtTest/QTest>

#include <algorithm>
#include <set>
#include <vector>

#include "tests/shell/Scenarios.h"
#include "tests/support/EventLoop.h"
#include "tests/support/WindowFixture.h"
#include "ui/Palette.h"

namespace kestrix::shell {
namespace {

class SessionListView : public testing::WindowFixture {
  protected:
    void openWithReading(QSize size = kSmall) {
        open(size);
        showReading(kInsulation);
    }
    int rows() { return screen().dataList()->count(); }
    void record(int times) {
        for (int i = 0; i < times; ++i) click("btnRecord");
        settle();
    }
    QQuickItem& cell(int row, int number) {
        return *testing::findItem(item(QStringLiteral("sessionRow%1").arg(row)),
                                  QStringLiteral("column%1").arg(number));
    }
    std::string column(int row, int number) {
        // Without the places where its lines may break.
        return cell(row, number)
            .property("text")
            .toString()
            .remove(QChar(0x200B))
            .remove(QChar(0x2060))
            .toStdString();
    }
    double scrolled() { return item("tableView").property("contentY").toDouble(); }
    double lastScroll() {
        QQuickItem& list = item("tableView");
        return list.property("contentHeight").toDouble() + list.property("bottomMargin").toDouble() -
               list.height();
    }
};

TEST_F(SessionListView, ThreePressesGiveThreeRowsAsTheModelHasThem) {
    openWithReading();
    record(3);
    for (int row = 0; row < 3; ++row) {
        const live::SessionRow& model = screen().dataList()->row(row);
        EXPECT_EQ(column(row, 1), "S_" + std::to_string(row + 1));
        EXPECT_EQ(column(row, 2), "INSULATION");
        EXPECT_EQ(column(row, 3), model.Parameters);
        EXPECT_EQ(column(row, 4), "186.4MΩ,524V");
        EXPECT_EQ(column(row, 5), model.DateTime);
        EXPECT_EQ(column(row, 6), " ");
    }
    EXPECT_EQ(testing::findItem(item("tableView"), QStringLiteral("sessionRow3")), nullptr);
}

TEST_F(SessionListView, TheRowsStandUnderEachOtherAsHighAsTheModelSays) {
    openWithReading();
    record(2);
    tester().play(kRcdSixRows);
    record(1);
    tester().play(kEarth);
    record(1);
    double y = 231;
    for (int row = 0; row < 4; ++row) {
        const QRectF place = placeOf(item(QStringLiteral("sessionRow%1").arg(row)));
        EXPECT_EQ(place, QRectF(0, y, 320, screen().dataList()->height(row))) << row;
        y = place.bottom();
    }
    EXPECT_EQ(screen().dataList()->height(3), 20);
    EXPECT_GT(screen().dataList()->height(2), 100);
}

TEST_F(SessionListView, ARowHasItsColumnsAndLinesAtTheirPlaces) {
    openWithReading();
    record(2);
    const ui::Columns& columns = screen().dataList()->columns();
    for (const QSize size : {QSize(320, 568), QSize(960, 1706)}) {
        resize(size);
        QQuickItem& row = item("sessionRow1");
        const QRectF place = placeOf(row);
        for (int number = 1; number <= 6; ++number) {
            QQuickItem& text = cell(1, number);
            const ui::Column& wanted = columns[number - 1];
            EXPECT_EQ(placeOf(text), QRectF(wanted.x, place.y(), wanted.width, place.height())) << number;
            EXPECT_EQ(text.property("horizontalAlignment").toInt(), Qt::AlignHCenter);
            const auto font = text.property("font").value<QFont>();
            EXPECT_EQ(font.family(), QStringLiteral("helvetica"));
            EXPECT_EQ(font.pixelSize(), 8);
        }
        std::vector<QRectF> wanted;
        for (int number = 1; number < 6; ++number)
            wanted.emplace_back(columns[number].x - 1, place.y(), 1, place.height());
        wanted.emplace_back(0, place.y(), 320, 1);
        wanted.emplace_back(0, place.bottom() - 1, 320, 1);
        std::vector<QRectF> lines;
        for (QQuickItem* part : row.childItems()) {
            if (part->property("color").value<QColor>() == ui::Palette::tableLine)
                lines.push_back(placeOf(*part));
        }
        const auto leftThenTop = [](const QRectF& a, const QRectF& b) {
            return std::pair(a.width(), a.x() + a.y()) < std::pair(b.width(), b.x() + b.y());
        };
        std::sort(lines.begin(), lines.end(), leftThenTop);
        EXPECT_EQ(lines, wanted);
    }
}

// On the display itself, at a size that does not fit whole points.
TEST_F(SessionListView, AllLinesOfTheListAreEquallyThick) {
    openWithReading();
    record(2);
    for (const QSize size : {QSize(384, 682), QSize(517, 733), QSize(700, 1000)}) {
        resize(size);
        const QImage display = onDisplay();
        const QRect row = pixelsOf(placeOf("sessionRow0"));
        // Where no text stands: just below the row's upper line.
        const int y = row.top() + row.height() / 10;
        std::vector<int> widths;
        int width = 0;
        for (int x = row.left(); x < row.right(); ++x) {
            if (display.pixel(x, y) == ui::Palette::tableLine.rgb()) {
                ++width;
            } else if (width > 0) {
                widths.push_back(width);
                width = 0;
            }
        }
        ASSERT_EQ(widths.size(), 5U) << size.width();
        EXPECT_EQ(std::set<int>(widths.begin(), widths.end()).size(), 1U) << size.width();
    }
}

TEST_F(SessionListView, NoTextOfACellIsCut) {
    openWithReading();
    for (const char* scenario : kAll) {
        tester().play(scenario);
        record(1);
    }
    resize({320, 2000});  // every row on the screen
    for (int row = 0; row < rows(); ++row) {
        for (int number = 1; number <= 6; ++number) {
            const QQuickItem& text = cell(row, number);
            EXPECT_LE(text.property("paintedWidth").toDouble(), text.width() + 0.01) << row << "/" << number;
            EXPECT_LE(text.property("paintedHeight").toDouble(), text.height() + 0.01)
                << row << "/" << number;
        }
    }
}

TEST_F(SessionListView, AWordThatIsWiderThanItsColumnIsDrawnSmallerAndNotBroken) {
    openWithReading();
    for (const char* scenario : kAll) {
        tester().play(scenario);
        record(1);
    }
    resize({320, 2000});  // every row on the screen
    EXPECT_EQ(column(1, 2), "INSULATION");
    EXPECT_EQ(cell(1, 2).property("lineCount").toInt(), 1);
    for (int row = 0; row < rows(); ++row) {
        for (int number = 1; number <= 6; ++number) {
            const QString words = cell(row, number).property("text").toString();
            const auto places = words.count(QRegularExpression(QStringLiteral("[ -/\u200B]")));
            EXPECT_LE(cell(row, number).property("lineCount").toInt(), places + 1) << words.toStdString();
        }
    }
}

// The word is there to its end, at the least size that can be read.
TEST_F(SessionListView, AWordThatFitsItsColumnInNoSizeIsBroken) {
    open();
    screen().dataList()->append({"S_1", "DONAUDAMPFSCHIFFFAHRTSGESELLSCHAFT", "", "", "", " "}, 20);
    settle();
    const QQuickItem& text = cell(0, 2);
    EXPECT_LE(text.property("paintedWidth").toDouble(), text.width());
    EXPECT_LE(text.property("paintedHeight").toDouble(), 20);
    EXPECT_GT(text.property("lineCount").toInt(), 1);
    EXPECT_FALSE(text.property("truncated").toBool());
}

TEST_F(SessionListView, ATextThatNeedsMoreLinesThanItsRowHasIsDrawnSmaller) {
    open();
    screen().dataList()->append({"S_1", "VOLTAGE/PHASE,Voltage, and then some", "", "", "", " "}, 20);
    settle();
    const QQuickItem& text = cell(0, 2);
    EXPECT_LE(text.property("paintedHeight").toDouble(), 20);
    EXPECT_LE(text.property("paintedWidth").toDouble(), 44);
    EXPECT_GE(text.property("lineCount").toInt(), 3);
}

TEST_F(SessionListView, RowsThatAreScrolledAwayDoNotCoverWhatStandsAboveAndBelow) {
    openWithReading();
    record(1);
    const QRect above = pixelsOf({0, 175, 320, 231 - 175});
    const QRect below = pixelsOf(placeOf("bottomBar"));
    const QImage before = onDisplay();
    record(29);
    item("tableView").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Up);
    item("mainView").forceActiveFocus(Qt::OtherFocusReason);
    settle();
    EXPECT_NE(onDisplay(), before);
    EXPECT_EQ(onDisplay().copy(above), before.copy(above));
    EXPECT_EQ(onDisplay().copy(below), before.copy(below));
}

TEST_F(SessionListView, FromTheThirdRowOnTheLastOneStandsAboveTheBottomBar) {
    openWithReading({320, 480});
    record(30);
    EXPECT_NEAR(placeOf("sessionRow29").bottom(), placeOf("bottomBar").top(), 0.01);
    resize({384, 700});
    record(1);
    EXPECT_NEAR(placeOf("sessionRow30").bottom(), placeOf("bottomBar").top(), 0.01);
}

TEST_F(SessionListView, ALastRowThatIsTallerThanTheListEndsAtTheBottom) {
    openWithReading({320, 480});
    record(2);
    tester().play(kRcdSixRows);
    record(2);
    EXPECT_NEAR(placeOf("sessionRow3").bottom(), placeOf("bottomBar").top(), 0.01);
}

TEST_F(SessionListView, AFewRowsStandAtTheTop) {
    openWithReading();
    record(3);
    EXPECT_EQ(placeOf("sessionRow0").top(), 231);
}

TEST_F(SessionListView, AClearedListIsEmptyAndStartsAnew) {
    openWithReading();
    record(3);
    screen().pressClearTable();
    settle();
    EXPECT_EQ(testing::findItem(item("tableView"), QStringLiteral("sessionRow0")), nullptr);
    record(1);
    EXPECT_EQ(column(0, 1), "S_1");
    EXPECT_EQ(placeOf("sessionRow0").top(), 231);
}

TEST_F(SessionListView, KeysGoThroughTheListToBothEnds) {
    openWithReading();
    record(30);
    EXPECT_NEAR(scrolled(), lastScroll(), 0.01);
    item("tableView").forceActiveFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Down);
    EXPECT_EQ(screen().tableView.currentRow(), 29) << "the keyboard comes to the newest row";
    EXPECT_NEAR(scrolled(), lastScroll(), 0.01);
    pressKey(Qt::Key_Up);
    EXPECT_EQ(screen().tableView.currentRow(), 28);
    pressKey(Qt::Key_Home);
    EXPECT_EQ(scrolled(), 0);
    pressKey(Qt::Key_Up);
    EXPECT_EQ(screen().tableView.currentRow(), 0);
    pressKey(Qt::Key_PageDown);
    EXPECT_GE(screen().tableView.currentRow(), 2);
    pressKey(Qt::Key_End);
    EXPECT_NEAR(scrolled(), lastScroll(), 0.01);
    EXPECT_EQ(rows(), 30);
}

TEST_F(SessionListView, LinesAreBrokenBetweenWords) {
    open();
    const ui::TextMeasure& measure = ui::FontTextMeasure();
    const std::string text = "IΔn=30mA,Type Of RCD=AC-G";
    screen().dataList()->append({"S_1", "RCD", text, "", "", " "},
                                screen().getCellHeight(QString::fromStdString(text), {}));
    settle();
    EXPECT_EQ(column(0, 3), text);
    EXPECT_GT(measure.wrappedHeight(QString::fromStdString(text), QStringLiteral("helvetica"), 8, 60, 300),
              0);
    const QString shown = cell(0, 3).property("text").toString();
    EXPECT_TRUE(shown.contains(QStringLiteral(",\u200BType"))) << "a line may break before Type";
}

TEST_F(SessionListView, KeysLeaveAShortListWhereItIs) {
    openWithReading();
    record(2);
    item("tableView").forceActiveFocus(Qt::TabFocusReason);
    for (const int key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Up}) {
        pressKey(key);
        EXPECT_EQ(scrolled(), 0);
    }
}

TEST_F(SessionListView, AFingerScrollsTheList) {
    openWithReading();
    record(30);
    const QPoint from = centreOf("tableView");
    const double before = scrolled();
    QTest::touchEvent(&window(), touchScreen()).press(0, from);
    for (int step = 1; step <= 10; ++step)
        QTest::touchEvent(&window(), touchScreen()).move(0, from + QPoint(0, 10 * step));
    EXPECT_LT(scrolled(), before - 50);
    QTest::touchEvent(&window(), touchScreen()).release(0, from + QPoint(0, 100));
    EXPECT_GE(scrolled(), 0);
    EXPECT_EQ(rows(), 30);
}

TEST_F(SessionListView, TheWheelScrollsTheList) {
    openWithReading();
    record(30);
    const double before = scrolled();
    const QPointF at = centreOf("tableView");
    QWheelEvent event(at, window().mapToGlobal(at), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&window(), &event);
    EXPECT_TRUE(testing::spinUntil([&] { return scrolled() < before - 20; }));
}

}  // namespace
}  // namespace kestrix::shell
