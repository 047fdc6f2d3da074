#pragma once

#include <QQuickItem>
#include <QQuickView>
#include <QVariantMap>

#include <vector>

namespace kestrix::bench {

// What the application is held against: a window of its size and font that draws one QML file and does
// nothing else.
class BareWindow : public QQuickView {
  public:
    // scene: a type of the module Kestrix.Bare; properties: what it requires. Ends the program when it does
    // not load.
    BareWindow(const QString& scene, const QVariantMap& properties);

    // The items of this name.
    std::vector<QQuickItem*> items(const QString& name) const;

    // The application's font. Needs the QGuiApplication.
    static void setFont();
};

}  // namespace kestrix::bench
