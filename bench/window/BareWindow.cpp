#include "bench/window/BareWindow.h"

#include <QtQml/qqmlextensionplugin.h>
#include <QFont>
#include <QGuiApplication>
#include <QQmlEngine>

#include <algorithm>
#include <cstdlib>
#include <iterator>

Q_IMPORT_QML_PLUGIN(Kestrix_BarePlugin)

namespace kestrix::bench {

BareWindow::BareWindow(const QString& scene, const QVariantMap& properties) {
    setResizeMode(SizeRootObjectToView);
    resize(384, 682);
    engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    setInitialProperties(properties);
    setSource(QUrl(QStringLiteral("qrc:/qt/qml/Kestrix/Bare/%1.qml").arg(scene)));
    if (status() != Ready) std::exit(1);
}

std::vector<QQuickItem*> BareWindow::items(const QString& name) const {
    const auto children = rootObject()->childItems();
    std::vector<QQuickItem*> found;
    std::copy_if(children.begin(), children.end(), std::back_inserter(found),
                 [&name](const QQuickItem* item) { return item->objectName() == name; });
    return found;
}

void BareWindow::setFont() {
    QFont font(QStringLiteral("Liberation Sans"));
    font.setHintingPreference(QFont::PreferNoHinting);
    QGuiApplication::setFont(font);
}

}  // namespace kestrix::bench
