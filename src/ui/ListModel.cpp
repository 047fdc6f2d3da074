#include "ui/ListModel.h"

#include <algorithm>
#include <utility>

#include "ui/LineBreaks.h"

namespace kestrix::ui {
namespace {

// No cell has room for more characters at a size that can be read; to lay out more only takes time.
constexpr qsizetype kMostShown = 1000;

QString asShown(const QString& text) {
    if (text.size() <= kMostShown) return withLineBreaks(text);
    const qsizetype end = text[kMostShown].isLowSurrogate() ? kMostShown - 1 : kMostShown;
    return withLineBreaks(text.left(end)) + QChar(0x2026);
}

}  // namespace

void ListModel::append(TableRow row) {
    Q_ASSERT(row.texts.size() == columns_.size());
    beginInsertRows({}, count(), count());
    rows_.push_back(std::move(row));
    endInsertRows();
    Q_EMIT countChanged();
}

void ListModel::removeAll() {
    setRows({});
}

void ListModel::setRows(std::vector<TableRow> rows) {
    Q_ASSERT(std::all_of(rows.begin(), rows.end(),
                         [this](const TableRow& row) { return row.texts.size() == columns_.size(); }));
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
    Q_EMIT countChanged();
}

void ListModel::insert(int row, TableRow content) {
    Q_ASSERT(content.texts.size() == columns_.size());
    beginInsertRows({}, row, row);
    rows_.insert(rows_.begin() + row, std::move(content));
    endInsertRows();
    Q_EMIT countChanged();
}

void ListModel::remove(int row) {
    beginRemoveRows({}, row, row);
    rows_.erase(rows_.begin() + row);
    endRemoveRows();
    Q_EMIT countChanged();
}

void ListModel::setRow(int row, TableRow content) {
    Q_ASSERT(content.texts.size() == columns_.size());
    rows_.at(static_cast<std::size_t>(row)) = std::move(content);
    Q_EMIT dataChanged(index(row), index(row));
}

void ListModel::setMark(int row, const QString& mark) {
    rows_.at(static_cast<std::size_t>(row)).mark = mark;
    Q_EMIT dataChanged(index(row), index(row), {MarkRole, WordsRole});
}

void ListModel::setHeights(double height) {
    if (rows_.empty()) return;
    for (TableRow& row : rows_) row.height = height;
    Q_EMIT dataChanged(index(0), index(count() - 1), {RowHeightRole});
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
            for (const QString& text : row.texts) texts << asShown(text);
            return texts;
        }
        case WordsRole:
            return inWords(index.row());
        case RowHeightRole:
            return row.height;
        case MarkRole:
            return row.mark;
        case GroupRole:
            return row.group;
        case StruckRole:
            return row.struck;
        default:
            if (role < FirstColumnRole || role >= FirstColumnRole + columns_.size()) return {};
            return row.texts.value(role - FirstColumnRole);
    }
}

QHash<int, QByteArray> ListModel::roleNames() const {
    QHash<int, QByteArray> names{{TextsRole, "texts"}, {WordsRole, "words"}, {RowHeightRole, "rowHeight"},
                                 {MarkRole, "mark"},   {GroupRole, "group"}, {StruckRole, "struck"}};
    int role = FirstColumnRole;
    for (const Column& column : columns_) names.insert(role++, column.role.toUtf8());
    return names;
}

}  // namespace kestrix::ui
