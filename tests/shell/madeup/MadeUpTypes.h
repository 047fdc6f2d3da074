#pragma once

#include <QtQml/qqmlregistration.h>

#include "tests/shell/madeup/MadeUpViewController.h"
#include "ui/UiTypes.h"

namespace kestrix::madeup::qml {

struct MadeUpViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::madeup::MadeUpViewController)
    QML_NAMED_ELEMENT(MadeUpViewController)
    QML_UNCREATABLE("belongs to the application")
};

}  // namespace kestrix::madeup::qml
