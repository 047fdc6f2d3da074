#include "tests/support/Items.h"

#include <gtest/gtest.h>

namespace kestrix::testing {
namespace {

bool isText(const QQuickItem& item) {
    return item.inherits("QQuickText");
}

double freeSpaceBefore(int alignment, int centre, int end, double free) {
    if ((alignment & centre) != 0) return free / 2;
    return (alignment & end) != 0 ? free : 0;
}

}  // namespace

QQuickItem* findItem(QQuickItem& root, const QString& name) {
    if (root.objectName() == name) return &root;
    const auto children = root.childItems();
    for (QQuickItem* child : children) {
        if (QQuickItem* found = findItem(*child, name)) return found;
    }
    return nullptr;
}

std::vector<QQuickItem*> itemsUnder(QQuickItem& root) {
    std::vector<QQuickItem*> items{&root};
    const auto children = root.childItems();
    for (QQuickItem* child : children) {
        const auto below = itemsUnder(*child);
        items.insert(items.end(), below.begin(), below.end());
    }
    return items;
}

std::vector<QQuickItem*> shownTexts(QQuickItem& root) {
    std::vector<QQuickItem*> texts = itemsUnder(root);
    std::erase_if(texts, [](const QQuickItem* item) {
        return !isText(*item) || !item->isVisible() || item->property("text").toString().trimmed().isEmpty();
    });
    return texts;
}

QQuickItem& textOf(QQuickItem& item) {
    for (QQuickItem* below : itemsUnder(item)) {
        if (isText(*below)) return *below;
    }
    ADD_FAILURE() << item.objectName().toStdString() << " has no text";
    return item;
}

QRectF paintedRect(const QQuickItem& text) {
    const QSizeF painted(text.property("paintedWidth").toDouble(), text.property("paintedHeight").toDouble());
    const int across = text.property("horizontalAlignment").toInt();
    const int down = text.property("verticalAlignment").toInt();
    return {{freeSpaceBefore(across, Qt::AlignHCenter, Qt::AlignRight, text.width() - painted.width()),
             freeSpaceBefore(down, Qt::AlignVCenter, Qt::AlignBottom, text.height() - painted.height())},
            painted};
}

}  // namespace kestrix::testing
