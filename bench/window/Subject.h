#pragma once

#include <QQuickWindow>
#include <QString>

namespace kestrix::bench {

// A window that shows values, however they come to it.
class Subject {
  public:
    virtual ~Subject() = default;
    virtual QQuickWindow& window() = 0;
    // Hands over `count` values, each larger than the one before. Answers the text that the last of them is
    // shown as.
    virtual QString push(int count) = 0;
    // The text that stands in the scene: the next picture shows it, and the last one did if one came since.
    virtual QString shown() const = 0;
};

}  // namespace kestrix::bench
