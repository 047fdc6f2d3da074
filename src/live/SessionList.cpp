#include "live/SessionList.h"

namespace kestrix::live {
namespace {

struct Column {
    int role;
    const char* key;
    std::string SessionRow::*text;
};

constexpr Column kColumns[] = {
    {SessionList::DataNameRole, "DataName", &SessionRow::DataName},
    {SessionList::FunctionRole, "Function", &SessionRow::Function},
    {SessionList::ParametersRole, "Parameters", &SessionRow::Parameters},
    {SessionList::ResultRole, "Result", &SessionRow::Result},
    {SessionList::DateTimeRole, "DateTime", &SessionRow::DateTime},
    {SessionList::CommentsRole, "Comments", &SessionRow::Comments},
};

}  // namespace

void SessionList::append(const SessionRow& row, double height) {
    beginInsertRows({}, count(), count());
    rows_.push_back({row, height});
    endInsertRows();
    Q_EMIT countChanged();
}

void SessionList::removeAll() {
    beginResetModel();
    rows_.clear();
    endResetModel();
    Q_EMIT countChanged();
}

int SessionList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant SessionList::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (role == HeightRole) return height(index.row());
    for (const Column& column : kColumns) {
        if (column.role == role) return QString::fromStdString(row(index.row()).*column.text);
    }
    return {};
}

QHash<int, QByteArray> SessionList::roleNames() const {
    QHash<int, QByteArray> names{{HeightRole, "height"}};
    for (const Column& column : kColumns) names.insert(column.role, column.key);
    return names;
}

}  // namespace kestrix::live
