#include "history/HistoryCellViewController.h"

#include "storage/MeasurementColumns.h"
#include "storage/Selection.h"
#include "ui/StageMetrics.h"

namespace kestrix::history {
namespace {

constexpr int kRows = 6;
constexpr double kAboveRows = 46;
constexpr int kRowFontSize = 12;

ui::Columns titleAndValue() {
    return {{.role = QStringLiteral("FunName"),
             .title = {},
             .x = 0,
             .width = 70,
             .fontSize = kRowFontSize,
             .asHeader = true},
            {.role = QStringLiteral("DataName"),
             .title = {},
             .x = 80,
             .width = 235,
             .fontSize = kRowFontSize,
             .alignment = Qt::AlignLeft}};
}

}  // namespace

HistoryCellViewController::HistoryCellViewController(ui::ScreenId id, const ui::Services& services)
    : FramedScreen(id, services), array(titleAndValue()) {}

void HistoryCellViewController::viewDidLoad() {
    dao = std::make_unique<storage::ServiceDao>(services_.documents);
    setTitle(QStringLiteral(" "));
    initTableView();
}

void HistoryCellViewController::initTableView() {
    tableView.setLines(ui::Table::Lines::Below);
    connect(&ui::StageMetrics::shared(), &ui::StageMetrics::changed, this,
            [this] { array.setHeights(rowHeight()); });
}

void HistoryCellViewController::viewDidAppear() {
    if (array.count() == 0) getMeasureData();
}

void HistoryCellViewController::getMeasureData() {
    for (const storage::MeasureData& measure : dao->findMeasureofDataId(storage::selectedDataId)) {
        QStringList values = storage::measurementTexts(measure);
        values.last() = QStringLiteral(" ");  // the comment is not shown
        for (int number = 0; number < kRows; ++number) setTableviewData(number, values[number]);
        setTitle(QString::fromStdString(measure.recordName));
    }
    const storage::Outcome& outcome = dao->lastOutcome();
    tableView.setEmptyText(
        outcome.done
            ? tr("This measurement is no longer there.\nGo back to choose another one.")
            : tr("The measurement could not be read: %1").arg(QString::fromStdString(outcome.reason)));
}

void HistoryCellViewController::setTableviewData(int number, const QString& value) {
    const QString title = storage::measurementColumns().at(number).title;
    array.append({.texts = {title, value}, .height = static_cast<double>(rowHeight()), .mark = {}});
}

int HistoryCellViewController::rowHeight() {
    const double height = (ui::StageMetrics::shared().height() - kAboveRows) / kRows;
    return QString::asprintf("%0.0f", height).toInt();
}

void HistoryCellViewController::pressHistoryCellBack() {
    services_.navigation.dismiss(true);
}

}  // namespace kestrix::history
