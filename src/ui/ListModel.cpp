#include "ui/ListModel.h"

#include <utility>

#include "ui/LineBreaks.h"

namespace kestrix::ui {

void ListModel::append(TableRow row) {
    Q_ASSERT(row.texts.size() == columns_.size());
    beginInsertRows({}, count(), count());
    rows_.push_back(std::move(row));
    endInsertRows();
    Q_EMIT countChanged();
}

void ListModel::removeAll() {
    beginResetModel();
    rows_.clear();
    endResetModel();
    Q_EMIT countChanged();
}

void ListModel::setMark(int row, const QString& mark) {
    rows_.at(static_cast<std::size_t>(row)).mark = mark;
    Q_EMIT dataChanged(index(row), index(row), {MarkRole, WordsRole});
}

QString ListModel::text(int row, const QString& role) const {
    for (qsizetype column = 0; column < columns_.size(); ++column) {
        if (columns_[column].role == role) return at(row).texts.value(column);
    }
    return {};
}

QString ListModel::inWords(int row) const {
    QStringList words;
    if (!at(row).mark.isEmpty()) words << at(row).mark;
    for (const QString& text : at(row).texts) {
        if (!text.trimmed().isEmpty()) words << text;
    }
    return words.join(QStringLiteral(", "));
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const TableRow& row = at(index.row());
    switch (role) {
        case TextsRole: {
            QStringList texts;
            for (const QString& text : row.texts) texts << withLineBreaks(text);
            return texts;
        }
        case WordsRole:
            return inWords(index.row());
        case RowHeightRole:
            return row.height;
        case MarkRole:
            return row.mark;
        default:
            if (role < FirstColumnRole || role >= FirstColumnRole + columns_.size()) return {};
            return row.texts.value(role - FirstColumnRole);
    }
}

QHash<int, QByteArray> ListModel::roleNames() const {
    QHash<int, QByteArray> names{
        {TextsRole, "texts"}, {WordsRole, "words"}, {RowHeightRole, "rowHeight"}, {MarkRole, "mark"}};
    int role = FirstColumnRole;
    for (const Column& column : columns_) names.insert(role++, column.role.toUtf8());
    return names;
}

}  // namespace kestrix::ui
