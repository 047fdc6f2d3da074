#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QStringList>

#include <vector>

#include "ui/Column.h"

namespace kestrix::ui {

// One row of a table.
struct TableRow {
    QStringList texts;   // in the order of the columns
    double height = 20;  // in points
    QString mark;        // what is wrong with it, in a word or two; empty: nothing
    QString group = {};  // of rows that stand one below the other: what stands above the first of them
    bool struck = false;
};

// The rows of a table, under one named role for each of its columns, and "texts" (all of them, as the cells
// show them: of a very long one the beginning), "words" (the row for a screen reader), "rowHeight",
// "mark", "group" and "struck". One class for every table: what differs is the columns.
class ListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

  public:
    enum Roles {
        TextsRole = Qt::UserRole,
        WordsRole,
        RowHeightRole,
        MarkRole,
        GroupRole,
        StruckRole,
        FirstColumnRole
    };

    explicit ListModel(Columns columns) : columns_(std::move(columns)) {}

    const Columns& columns() const { return columns_; }

    // A row has as many texts as there are columns.
    void append(TableRow row);
    // All rows at once, in place of those of before: however many, the view is told once.
    void setRows(std::vector<TableRow> rows);
    void removeAll();
    // row: from 0 to count().
    void insert(int row, TableRow content);
    void remove(int row);
    // In place of what that row held; as high as it.
    void setRow(int row, TableRow content);
    // Empty: nothing is wrong with it any more.
    void setMark(int row, const QString& mark);
    // Of every row, in points.
    void setHeights(double height);

    int count() const { return static_cast<int>(rows_.size()); }
    const TableRow& at(int row) const { return rows_.at(static_cast<std::size_t>(row)); }
    // The empty text for a role that no column has.
    QString text(int row, const QString& role) const;
    // What is wrong with it first, then its texts, blank ones left out.
    QString inWords(int row) const;
    double height(int row) const { return at(row).height; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void countChanged();

  private:
    Columns columns_;
    std::vector<TableRow> rows_;
};

}  // namespace kestrix::ui
