#include "live/SessionList.h"

#include <iterator>

#include "storage/MeasurementColumns.h"

namespace kestrix::live {
namespace {

// In the order of the columns.
constexpr std::string SessionRow::*kTexts[] = {
    &SessionRow::DataName, &SessionRow::Function, &SessionRow::Parameters,
    &SessionRow::Result,   &SessionRow::DateTime, &SessionRow::Comments,
};

}  // namespace

SessionList::SessionList() : ListModel(storage::measurementColumns()) {}

void SessionList::append(const SessionRow& row, double height) {
    ui::TableRow texts{.texts = {}, .height = height, .mark = {}};
    for (auto text : kTexts) texts.texts << QString::fromStdString(row.*text);
    ListModel::append(std::move(texts));
}

SessionRow SessionList::row(int number) const {
    SessionRow row;
    for (std::size_t column = 0; column < std::size(kTexts); ++column)
        row.*kTexts[column] = at(number).texts.at(static_cast<qsizetype>(column)).toStdString();
    return row;
}

}  // namespace kestrix::live
