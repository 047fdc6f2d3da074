#include "ui/Table.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeySequence>

#include <algorithm>
#include <utility>

#include "ui/Palette.h"
#include "ui/TextMeasure.h"

namespace kestrix::ui {
namespace {

constexpr int kHeaderFontSize = 8;
const QString kCellFont = QStringLiteral("helvetica");
constexpr double kReadingStep = 40;  // of a row that is taller than what can be seen at once

std::unique_ptr<Label> headerOf(const Column& column, Screen& screen) {
    auto header = std::make_unique<Label>(screen, ("header" + column.role).toUtf8().constData());
    header->setText(column.title);
    header->setFont(QStringLiteral("Arial"), kHeaderFontSize);
    header->setTextColor(Palette::textOnDark);
    header->setBackgroundColor(Palette::header);
    header->setAlignment(Qt::AlignHCenter);
    header->setShrinksToFit(true);
    return header;
}

}  // namespace

Table::Table(Screen& screen, const char* name, ListModel& rows) : Control(screen, name), rows_(rows) {
    for (const Column& column : rows.columns()) headers_.push_back(headerOf(column, screen));
    using Held = KeyTable::Held;
    keys_.add(
        Qt::Key_Up, [this] { moveOn(-1); }, Held::Repeats);
    keys_.add(
        Qt::Key_Down, [this] { moveOn(1); }, Held::Repeats);
    keys_.add(
        Qt::Key_PageUp, [this] { moveByPage(-1); }, Held::Repeats);
    keys_.add(
        Qt::Key_PageDown, [this] { moveByPage(1); }, Held::Repeats);
    keys_.add(Qt::Key_Home, [this] { setCurrentRow(0); });
    keys_.add(Qt::Key_End, [this] { setCurrentRow(rows_.count() - 1); });
    connect(&rows, &ListModel::modelReset, this, [this] {
        closeMenu();
        currentRow_ = -1;
        Q_EMIT currentRowChanged();
    });
    connect(&rows, &ListModel::rowsRemoved, this, [this] {
        closeMenu();
        if (currentRow_ >= 0) setCurrentRow(currentRow_);  // what follows takes the place
    });
}

QVariantList Table::columns() const {
    QVariantList columns;
    for (const Column& column : rows_.columns()) columns << QVariant::fromValue(column);
    return columns;
}

QVariantList Table::headerColumns() const {
    QVariantList columns;
    for (const Column& column : rows_.columns()) {
        if (column.asHeader) columns << QVariant::fromValue(column);
    }
    return columns;
}

QList<Label*> Table::headers() const {
    QList<Label*> headers;
    for (const auto& header : headers_) headers << header.get();
    return headers;
}

void Table::setChoice(std::function<void(int)> action) {
    choice_ = std::move(action);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) keys_.add(key, [this] { choose(currentRow_); });
}

void Table::choose(int row) {
    if (choice_ && row >= 0 && row < rows_.count()) choice_(row);
}

void Table::setDeletion(const QString& title, std::function<void(int)> action) {
    deletionTitle_ = title;
    deletion_ = std::move(action);
    keys_.add(Qt::Key_Delete, [this] { remove(currentRow_); });
}

void Table::remove(int row) {
    if (deletion_ && row >= 0 && row < rows_.count()) deletion_(row);
}

void Table::setEmptyText(const QString& text) {
    emptyText_ = text;
    Q_EMIT emptyTextChanged();
}

void Table::setCurrentRow(int row) {
    currentRow_ = std::clamp(row, std::min(0, rows_.count() - 1), rows_.count() - 1);
    Q_EMIT currentRowChanged();  // also when it is the same: the view shows it, wherever it was scrolled to
}

bool Table::pressKey(int key, int modifiers, bool repeated, double pageHeight, double hiddenAbove,
                     double hiddenBelow) {
    const QKeySequence pressed(modifiers | key);
    if (QKeySequence::keyBindings(QKeySequence::Copy).contains(pressed)) {
        copyRow(currentRow_);
        return true;
    }
    pageHeight_ = pageHeight;
    hiddenAbove_ = hiddenAbove;
    hiddenBelow_ = hiddenBelow;
    return keys_.press(key, modifiers, repeated);
}

// The keyboard comes to a list at its newest row.
void Table::moveOn(int direction) {
    if (currentRow_ < 0) return setCurrentRow(rows_.count() - 1);
    if (!readOn(direction)) setCurrentRow(currentRow_ + direction);
}

// A row that is taller than what can be seen at once is read to its end before the next one.
bool Table::readOn(int direction) {
    const double hidden = direction > 0 ? hiddenBelow_ : hiddenAbove_;
    if (rows_.height(currentRow_) <= pageHeight_ || hidden < 1) return false;
    Q_EMIT scrollAsked(direction * std::min(hidden, kReadingStep));
    return true;
}

// As far as a page shows, so that one row of the page before stays to be seen.
void Table::moveByPage(int direction) {
    int row = currentRow_ < 0 ? rows_.count() - 1 : currentRow_;
    if (row < 0) return;
    const auto hasNext = [&] { return row + direction >= 0 && row + direction < rows_.count(); };
    double left = pageHeight_ - rows_.height(row);
    for (int moved = 0; hasNext() && (moved == 0 || left >= rows_.height(row + direction)); ++moved) {
        row += direction;
        left -= rows_.height(row);
    }
    setCurrentRow(row);
}

void Table::openMenu(int row) {
    if (row < 0 || row >= rows_.count()) return;
    menuRow_ = row;
    Q_EMIT menuRowChanged();
}

void Table::closeMenu() {
    if (menuRow_ < 0) return;
    menuRow_ = -1;
    Q_EMIT menuRowChanged();
}

QStringList Table::menuEntries() const {
    QStringList entries{tr("Copy this row")};
    if (deletion_) entries << deletionTitle_;
    return entries;
}

void Table::chooseEntry(int entry) {
    const int row = menuRow_;
    closeMenu();
    if (entry == 0)
        copyRow(row);
    else
        remove(row);
}

void Table::copyRow(int row) const {
    if (row < 0 || row >= rows_.count()) return;
    QStringList texts;
    for (const QString& text : rows_.at(row).texts) texts << text.trimmed();
    QGuiApplication::clipboard()->setText(texts.join(u'\t'));
}

bool Table::fitsUnbroken(const QString& text, double width, int size) {
    constexpr double kWidestCharacter = 1.5;                                               // of the size
    if (static_cast<double>(text.size()) * size * kWidestCharacter <= width) return true;  // nearly all
    return FontTextMeasure::widestWord(text, kCellFont, size) <= width;
}

}  // namespace kestrix::ui
