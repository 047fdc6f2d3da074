#pragma once

#include <QtQml/qqmlregistration.h>

#include "shell/LeftSideBarViewController.h"
#include "shell/SidebarViewController.h"
#include "ui/UiTypes.h"

// The types of this folder under the names that QML knows them by.
namespace kestrix::shell::qml {

struct SidebarViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::SidebarViewController)
    QML_NAMED_ELEMENT(SidebarViewController)
    QML_UNCREATABLE("belongs to the application")
};

struct LeftSideBarViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::LeftSideBarViewController)
    QML_NAMED_ELEMENT(LeftSideBarViewController)
    QML_UNCREATABLE("belongs to the application")
};

}  // namespace kestrix::shell::qml
