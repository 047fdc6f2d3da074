#include "storage/RecordList.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace kestrix::storage {
namespace {

ui::Columns recordColumns() {
    const auto column = [](const char* role, const char* title, double x) {
        return ui::Column{.role = QLatin1String(role),
                          .title = QCoreApplication::translate("RecordList", title),
                          .x = x,
                          .width = 130};
    };
    return {column("projectName", QT_TRANSLATE_NOOP("RecordList", "Project"), 0),
            column("Samples", QT_TRANSLATE_NOOP("RecordList", "Samples"), 130),
            column("Dates", QT_TRANSLATE_NOOP("RecordList", "Date"), 0),
            column("Times", QT_TRANSLATE_NOOP("RecordList", "Time"), 130)};
}

// The names of the columns are crossed: the date stands in endTime, the time of day in dates.
ui::TableRow rowOf(const RecordData& record) {
    const auto samples = QCoreApplication::translate("RecordList", "samples:  ");
    return {.texts = {QString::fromStdString(record.projectName), samples + QString::number(record.samples),
                      QString::fromStdString(record.endTime), QString::fromStdString(record.dates)},
            .height = RecordList::kRowHeight,
            .mark = {}};
}

}  // namespace

RecordList::RecordList() : ListModel(recordColumns()) {}

void RecordList::setRecords(const std::vector<RecordData>& records) {
    std::vector<ui::TableRow> rows;
    rows.reserve(records.size());
    ids_.clear();
    ids_.reserve(records.size());
    for (const RecordData& record : records) {
        rows.push_back(rowOf(record));
        ids_.push_back(record.recordId);
    }
    setRows(std::move(rows));
}

void RecordList::insertRecord(const RecordData& record) {
    const auto place = std::lower_bound(ids_.begin(), ids_.end(), record.recordId);
    if (place != ids_.end() && *place == record.recordId) return;
    const auto row = static_cast<int>(place - ids_.begin());
    ids_.insert(place, record.recordId);
    insert(row, rowOf(record));
}

bool RecordList::shows(int row, const RecordData& record) const {
    QStringList shown = at(row).texts;
    QStringList made = rowOf(record).texts;
    constexpr qsizetype kSamples = 1;
    shown.removeAt(kSamples);
    made.removeAt(kSamples);
    return shown == made;
}

void RecordList::removeRecord(int row) {
    ids_.erase(ids_.begin() + row);
    remove(row);
}

}  // namespace kestrix::storage
