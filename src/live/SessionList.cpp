#include "live/SessionList.h"

#include <QCoreApplication>

#include <iterator>

namespace kestrix::live {
namespace {

struct SessionColumn {
    const char* role;
    const char* title;
    double x;
    double width;
    std::string SessionRow::*text;
};

constexpr SessionColumn kSessionColumns[] = {
    {"DataName", QT_TRANSLATE_NOOP("SessionList", "Data Name"), 0, 50, &SessionRow::DataName},
    {"Function", QT_TRANSLATE_NOOP("SessionList", "Function"), 51, 44, &SessionRow::Function},
    {"Parameters", QT_TRANSLATE_NOOP("SessionList", "Parameters"), 96, 61, &SessionRow::Parameters},
    {"Result", QT_TRANSLATE_NOOP("SessionList", "Result"), 158, 60, &SessionRow::Result},
    {"DateTime", QT_TRANSLATE_NOOP("SessionList", "Date Time"), 219, 50, &SessionRow::DateTime},
    {"Comments", QT_TRANSLATE_NOOP("SessionList", "Comments"), 270, 50, &SessionRow::Comments},
};

}  // namespace

SessionList::SessionList() : ListModel(sessionColumns()) {}

void SessionList::append(const SessionRow& row, double height) {
    ui::TableRow texts{.texts = {}, .height = height, .mark = {}};
    for (const SessionColumn& column : kSessionColumns)
        texts.texts << QString::fromStdString(row.*column.text);
    ListModel::append(std::move(texts));
}

SessionRow SessionList::row(int number) const {
    SessionRow row;
    for (std::size_t column = 0; column < std::size(kSessionColumns); ++column) {
        row.*kSessionColumns[column].text = at(number).texts.at(static_cast<qsizetype>(column)).toStdString();
    }
    return row;
}

ui::Columns SessionList::sessionColumns() {
    ui::Columns columns;
    for (const SessionColumn& column : kSessionColumns) {
        columns << ui::Column{QLatin1String(column.role),
                              QCoreApplication::translate("SessionList", column.title), column.x,
                              column.width};
    }
    return columns;
}

}  // namespace kestrix::live
