#pragma once

#include <QQuickItem>
#include <QQuickWindow>

#include <cstdio>

#include "bench/window/Figures.h"

namespace kestrix::bench {

// How many items stand in a scene. Others than texts count as rectangles.
struct ItemCounts {
    int shownTexts = 0;
    int hiddenTexts = 0;
    int shownRectangles = 0;
    int hiddenRectangles = 0;
};

inline void countItems(const QQuickItem& item, ItemCounts& counts) {
    const bool text = item.inherits("QQuickText");
    const bool shown = item.isVisible();
    ++(text ? (shown ? counts.shownTexts : counts.hiddenTexts)
            : (shown ? counts.shownRectangles : counts.hiddenRectangles));
    const auto children = item.childItems();
    for (const QQuickItem* child : children) countItems(*child, counts);
}

// Once the first picture is drawn: prints the milliseconds since the process was asked for, the peak memory
// in KiB and the items of the four kinds, and ends the program.
inline void reportFirstPicture(QQuickWindow& window, Clock::time_point askedFor) {
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&window, askedFor] {
        const double time = milliseconds(Clock::now() - askedFor);
        const long memory = peakMemoryKib();
        ItemCounts items;
        countItems(*window.contentItem(), items);
        std::printf("%.3f %ld %d %d %d %d\n", time, memory, items.shownTexts, items.hiddenTexts,
                    items.shownRectangles, items.hiddenRectangles);
        std::fflush(stdout);
        std::_Exit(0);
    });
}

}  // namespace kestrix::bench
