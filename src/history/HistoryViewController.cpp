#include "history/HistoryViewController.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

#include "storage/MeasurementColumns.h"
#include "storage/Selection.h"
#include "ui/Palette.h"

namespace kestrix::history {
namespace {

using ui::Palette;

struct LabelStyle {
    QColor background;
    int fontSize;
};

const std::array<LabelStyle, 4> kLabelStyles{{
    {Palette::clear, 14},
    {Palette::clear, 12},
    {Palette::header, 9},  // titles of the columns
    {Palette::clear, 20},
}};
constexpr int kTitleStyle = 2;

constexpr int kCellFontSize = 8;
constexpr double kTextWidth = 60;
constexpr double kMostTextHeight = 400;
constexpr double kLeastRowHeight = 20;

}  // namespace

HistoryViewController::HistoryViewController(ui::ScreenId id, const ui::Services& services)
    : FramedScreen(id, services, "historyTitle"), array(storage::measurementColumns()) {}

void HistoryViewController::viewDidLoad() {
    dao = std::make_unique<storage::ServiceDao>(services_.documents);
    btnShare.setImage(QStringLiteral("orvo_home_button_share.png"));
    btnShare.setAccessibleName(tr("Export"));
    btnShare.setAction([this] { pressShare(); });
    initTableView();
}

void HistoryViewController::initTableView() {
    for (ui::Label* header : tableView.headers()) setUILabelView(*header, kTitleStyle, header->text());
    tableView.setLines(ui::Table::Lines::Shared);
    tableView.setChoice([this](int row) { didSelectRow(row); });
}

void HistoryViewController::setUILabelView(ui::Label& label, int style, const QString& text) const {
    const LabelStyle& look = kLabelStyles.at(static_cast<std::size_t>(style));
    label.setAlignment(Qt::AlignHCenter);
    label.setTextColor(Palette::textOnDark);
    label.setText(text);
    label.setBackgroundColor(look.background);
    label.setFont(QStringLiteral("Arial"), look.fontSize);
}

void HistoryViewController::viewDidAppear() {
    if (array.count() == 0) getMeasureData();
}

void HistoryViewController::getMeasureData() {
    readRecord();
    arrays = dao->findMeasureofId(storage::selectedRecordId);
    if (!arrays.empty()) {
        recordNames = arrays.front().recordName;
        historyTitle.setText(QString::fromStdString(recordNames));
    }
    std::vector<ui::TableRow> rows;
    rows.reserve(arrays.size());
    for (const storage::MeasureData& measure : arrays) {
        ui::TableRow& row = rows.emplace_back();
        row.texts = storage::measurementTexts(measure);
        row.texts.last().clear();  // the column of the comments stays empty
        row.height = getCellHeight(row.texts[2], row.texts[3]);
    }
    array.setRows(std::move(rows));
    showWhatIsMissing();
}

// Of several that matched, the last one counts.
void HistoryViewController::readRecord() {
    record.reset();
    mailTitle.clear();
    readProblem_.clear();
    for (storage::RecordData& found : dao->findRecordofId(storage::selectedRecordId))
        record = std::move(found);
    if (record) mailTitle = record->projectName;
    const storage::Outcome& outcome = dao->lastOutcome();
    if (!outcome.done)
        readProblem_ =
            tr("The test record could not be read: %1").arg(QString::fromStdString(outcome.reason));
}

// Who sees fewer measurements than were stored must know.
void HistoryViewController::showWhatIsMissing() {
    const storage::Outcome& outcome = dao->lastOutcome();
    if (outcome.done) {
        if (!readProblem_.isEmpty()) {
            services_.notice.show(readProblem_);
            return tableView.setEmptyText(readProblem_);
        }
        if (arrays.empty() && !record)
            return tableView.setEmptyText(tr("This test record is no longer there."));
        tableView.setEmptyText(tr("This test record has no measurements.\nGo back to choose another one."));
        return;
    }
    readProblem_ = tr("Not all measurements could be read: %1").arg(QString::fromStdString(outcome.reason));
    tableView.setEmptyText(readProblem_);
    services_.notice.show(readProblem_);
}

double HistoryViewController::getCellHeight(const QString& parametersText, const QString& resultText) const {
    const QString& longer = parametersText.size() > resultText.size() ? parametersText : resultText;
    const double height = services_.textMeasure.wrappedHeight(longer, QStringLiteral("helvetica"),
                                                              kCellFontSize, kTextWidth, kMostTextHeight);
    return std::max(height, kLeastRowHeight);
}

void HistoryViewController::didSelectRow(int row) {
    storage::selectedDataId = arrays.at(static_cast<std::size_t>(row)).dataId;
    services_.navigation.present(ui::ScreenId::HistoryCell, true);
}

void HistoryViewController::pressHistoryBack() {
    services_.navigation.dismiss(true);
}

void HistoryViewController::pressShare() {
    showMenu();
}

void HistoryViewController::showMenu() {
    if (!menu) {
        menu = std::make_unique<ui::MBButtonMenuViewController>(
            QStringList{tr("Email"), tr("Export to CSV"), tr("Export to PDF"), tr("Cancel")},
            services_.slideDuration);
        menu->setDelegate(this);
        menu->setCancelButtonIndex(menu->buttonTitles().size() - 1);
        Q_EMIT menuMade();
    }
    menu->showInView(*this);
}

void HistoryViewController::buttonMenuViewController(ui::MBButtonMenuViewController& shown,
                                                     std::uint64_t buttonTappedAtIndex) {
    shown.hide();
    exportAs(static_cast<int>(buttonTappedAtIndex));
}

void HistoryViewController::buttonMenuViewControllerDidCancel(ui::MBButtonMenuViewController& shown) {
    shown.hide();
}

}  // namespace kestrix::history
