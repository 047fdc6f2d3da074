#pragma once

#include <QQuickItem>
#include <QRectF>
#include <QString>

#include <vector>

// What stands in a window's scene.
namespace kestrix::testing {

// The first of this name, children in order; none without one.
QQuickItem* findItem(QQuickItem& root, const QString& name);

// `root` and everything below it.
std::vector<QQuickItem*> itemsUnder(QQuickItem& root);

// The texts that can be seen: visible, and not empty.
std::vector<QQuickItem*> shownTexts(QQuickItem& root);

// The text item of a label or a button.
QQuickItem& textOf(QQuickItem& item);

// Where the glyphs of a text item stand in it.
QRectF paintedRect(const QQuickItem& text);

}  // namespace kestrix::testing
