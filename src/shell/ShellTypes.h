#pragma once

#include <QtQml/qqmlregistration.h>

#include "shell/AboutViewController.h"
#include "shell/ConsoleSearchViewController.h"
#include "shell/HelpViewController.h"
#include "shell/LeftSideBarViewController.h"
#include "shell/MoreAppsViewController.h"
#include "shell/PicturePage.h"
#include "shell/SidebarViewController.h"
#include "shell/TesterViewController.h"
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

struct TesterViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::TesterViewController)
    QML_NAMED_ELEMENT(TesterViewController)
    QML_UNCREATABLE("belongs to the application")
};

struct AboutViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::AboutViewController)
    QML_NAMED_ELEMENT(AboutViewController)
    QML_UNCREATABLE("belongs to the application")
};

struct ConsoleSearchViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::ConsoleSearchViewController)
    QML_NAMED_ELEMENT(ConsoleSearchViewController)
    QML_UNCREATABLE("belongs to the application")
};

struct HelpViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::HelpViewController)
    QML_NAMED_ELEMENT(HelpViewController)
    QML_UNCREATABLE("belongs to the application")
};

struct MoreAppsViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::MoreAppsViewController)
    QML_NAMED_ELEMENT(MoreAppsViewController)
    QML_UNCREATABLE("belongs to the application")
};

struct PicturePageType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::PicturePage)
    QML_NAMED_ELEMENT(PicturePage)
    QML_UNCREATABLE("belongs to the application")
};

struct PlacedPictureType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::PlacedPicture)
    QML_ANONYMOUS
};

struct PlacedTextType {
    Q_GADGET
    QML_FOREIGN(kestrix::shell::PlacedText)
    QML_ANONYMOUS
};

}  // namespace kestrix::shell::qml
