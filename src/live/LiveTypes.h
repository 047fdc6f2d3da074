#pragma once

#include <QtQml/qqmlregistration.h>
#include <QQmlEngine>

#include "live/MainViewController.h"
#include "live/SessionList.h"
#include "live/SpokenReading.h"
#include "ui/UiTypes.h"

// The types of this folder under the names that QML knows them by.
namespace kestrix::live::qml {

// What MainViewController inherits, and names in full: by that name the tools look for it.
struct MeterDisplayType {
    Q_GADGET
    QML_FOREIGN(kestrix::live::MeterDisplay)
    QML_ANONYMOUS
};

struct MainViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::live::MainViewController)
    QML_NAMED_ELEMENT(MainViewController)
    QML_UNCREATABLE("belongs to the application")
};

struct SessionListType {
    Q_GADGET
    QML_FOREIGN(kestrix::live::SessionList)
    QML_NAMED_ELEMENT(SessionList)
    QML_UNCREATABLE("belongs to its screen")
};

struct SpokenReadingType {
    Q_GADGET
    QML_FOREIGN(kestrix::live::SpokenReading)
    QML_NAMED_ELEMENT(SpokenReading)
    QML_UNCREATABLE("belongs to its screen")
};

}  // namespace kestrix::live::qml
