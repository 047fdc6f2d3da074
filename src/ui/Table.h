#pragma once

#include <QList>
#include <QVariantList>

#include <memory>
#include <vector>

#include "ui/Control.h"
#include "ui/KeyTable.h"
#include "ui/Label.h"
#include "ui/ListModel.h"

namespace kestrix::ui {

// A table on a screen: the headers above its columns, its rows, and the row at which the keyboard is. The
// rows belong to the screen, which appends to them; what the view needs of the columns comes from there too.
class Table : public kestrix::ui::Control {
    Q_OBJECT
    Q_PROPERTY(kestrix::ui::ListModel* rows READ rows CONSTANT FINAL)
    Q_PROPERTY(QVariantList columns READ columns CONSTANT FINAL)
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged FINAL)

  public:
    // rows: not owned; they outlive the table. A header is named "header" and its column's role.
    Table(Screen& screen, const char* name, ListModel& rows);

    ListModel* rows() const { return &rows_; }
    QVariantList columns() const;  // of Column
    QList<Label*> headers() const;
    // column: counted from 0.
    Q_INVOKABLE kestrix::ui::Label* header(int column) const {
        return headers_.at(static_cast<std::size_t>(column)).get();
    }

    // The row at which the keyboard is; -1: at none yet. One that is not there becomes the nearest.
    int currentRow() const { return currentRow_; }
    void setCurrentRow(int row);

    // A key went down, or repeats itself, while the table has the keyboard. pageHeight: of what can be seen
    // at once, in points. True when the key is used up.
    Q_INVOKABLE bool pressKey(int key, int modifiers, bool repeated, double pageHeight);

    // Puts the row on the clipboard, its texts with tabs between them. Nothing for a row that is not there.
    Q_INVOKABLE void copyRow(int row) const;

    // The view brings the last row to its bottom, without animation.
    void scrollToLastRow() { Q_EMIT lastRowAsked(); }

  Q_SIGNALS:
    void currentRowChanged();
    void lastRowAsked();

  private:
    void moveBy(int rows);
    void moveByPage(int direction);

    ListModel& rows_;
    std::vector<std::unique_ptr<Label>> headers_;
    KeyTable keys_;
    double pageHeight_ = 0;
    int currentRow_ = -1;
};

}  // namespace kestrix::ui
