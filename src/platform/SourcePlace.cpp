#include "platform/SourcePlace.h"

#include <QCoreApplication>

#include "platform/AccessoryUri.h"
#include "platform/PrintableText.h"

namespace kestrix::platform {
namespace {

std::string fileName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string translated(const char* text) {
    return QCoreApplication::translate("SourcePlace", text).toStdString();
}

std::string placeOf(const AccessoryUri& uri) {
    if (uri.scheme == "bluetooth") {
        if (uri.target.empty()) return translated(QT_TRANSLATE_NOOP("SourcePlace", "Any paired tester"));
        return translated(QT_TRANSLATE_NOOP("SourcePlace", "Bluetooth")) + ' ' + uri.target;
    }
    if (uri.scheme == "simulator") return translated(QT_TRANSLATE_NOOP("SourcePlace", "Built-in tester"));
    return uri.scheme == "replay" ? fileName(uri.target) : uri.target;
}

}  // namespace

std::string placeOf(const std::string& text) {
    const auto uri = parseAccessoryUri(text);
    const std::string place = uri ? placeOf(*uri) : std::string();
    return printableText(place.empty() ? text : place);
}

}  // namespace kestrix::platform
