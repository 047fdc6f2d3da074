#pragma once

#include <QList>
#include <QVariantList>

#include <functional>
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
    Q_PROPERTY(QVariantList headerColumns READ headerColumns CONSTANT FINAL)
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged FINAL)
    Q_PROPERTY(int menuRow READ menuRow NOTIFY menuRowChanged FINAL)
    Q_PROPERTY(bool choosable READ isChoosable CONSTANT FINAL)
    Q_PROPERTY(Lines lines READ lines CONSTANT FINAL)
    Q_PROPERTY(bool grouped READ isGrouped CONSTANT FINAL)
    Q_PROPERTY(QStringList menuEntries READ menuEntries CONSTANT FINAL)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY emptyTextChanged FINAL)

  public:
    // Which lines a row has across: one at its top and one at its bottom; one between it and the next, with
    // one around all; one below it.
    enum class Lines { TopAndBottom, Shared, Below };
    Q_ENUM(Lines)

    // rows: not owned; they outlive the table. A header is named "header" and its column's role.
    Table(Screen& screen, const char* name, ListModel& rows);

    ListModel* rows() const { return &rows_; }
    QVariantList columns() const;        // of Column
    QVariantList headerColumns() const;  // those that look like a header
    QList<Label*> headers() const;
    // column: counted from 0.
    Q_INVOKABLE kestrix::ui::Label* header(int column) const {
        return headers_.at(static_cast<std::size_t>(column)).get();
    }

    // From now on a row can be chosen: by a tap, with Enter, or by a screen reader's press. action: is called
    // with its number. To be set before the table is shown.
    void setChoice(std::function<void(int row)> action);
    bool isChoosable() const { return choice_ != nullptr; }
    // The user's choice. Nothing for a row that is not there.
    Q_INVOKABLE void choose(int row);

    // From now on a row can be deleted: with the Delete key, or from its menu, where this stands under
    // `title`. action: is called with its number. To be set before the table is shown.
    void setDeletion(const QString& title, std::function<void(int row)> action);

    // Whether the groups of the rows stand above them. To be set before the table is shown.
    void setGrouped(bool grouped) { grouped_ = grouped; }
    bool isGrouped() const { return grouped_; }

    // To be set before the table is shown.
    void setLines(Lines lines) { lines_ = lines; }
    Lines lines() const { return lines_; }

    // What stands in place of the rows while there are none: what they would be, and what to do.
    QString emptyText() const { return emptyText_; }
    void setEmptyText(const QString& text);

    // The row at which the keyboard is; -1: at none yet. One that is not there becomes the nearest.
    int currentRow() const { return currentRow_; }
    void setCurrentRow(int row);

    // A key went down, or repeats itself, while the table has the keyboard. pageHeight: of what can be seen
    // at once; hiddenAbove, hiddenBelow: how much of the current row is scrolled out of sight; in points.
    // True when the key is used up.
    Q_INVOKABLE bool pressKey(int key, int modifiers, bool repeated, double pageHeight,
                              double hiddenAbove = 0, double hiddenBelow = 0);

    // The row whose menu is open; -1: none. Opening it for a row that is not there does nothing.
    int menuRow() const { return menuRow_; }
    Q_INVOKABLE void openMenu(int row);
    Q_INVOKABLE void closeMenu();
    // What the menu offers: copying its row, and what else was set.
    QStringList menuEntries() const;
    // Does it, and closes the menu.
    Q_INVOKABLE void chooseEntry(int entry);

    // Puts the row on the clipboard, its texts with tabs between them. Nothing for a row that is not there.
    Q_INVOKABLE void copyRow(int row) const;

    // For the view: whether each word of the text, as the cells draw it, is at most so wide. size: of the
    // font, in points.
    Q_INVOKABLE static bool fitsUnbroken(const QString& text, double width, int size);

    // The view brings the last row to its bottom, without animation.
    void scrollToLastRow() { Q_EMIT lastRowAsked(); }

  Q_SIGNALS:
    void currentRowChanged();
    void menuRowChanged();
    void emptyTextChanged();
    void lastRowAsked();
    void scrollAsked(double by);  // in points, downwards

  private:
    void remove(int row);
    void moveOn(int direction);
    bool readOn(int direction);
    void moveByPage(int direction);

    ListModel& rows_;
    std::vector<std::unique_ptr<Label>> headers_;
    KeyTable keys_;
    std::function<void(int)> choice_;
    std::function<void(int)> deletion_;
    QString deletionTitle_;
    bool grouped_ = false;
    QString emptyText_;
    Lines lines_ = Lines::TopAndBottom;
    double pageHeight_ = 0;
    double hiddenAbove_ = 0;
    double hiddenBelow_ = 0;
    int currentRow_ = -1;
    int menuRow_ = -1;
};

}  // namespace kestrix::ui
