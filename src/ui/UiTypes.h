#pragma once

#include <QtQml/qqmlregistration.h>
#include <QQmlEngine>

#include <QJSEngine>

#include "ui/Alerts.h"
#include "ui/Button.h"
#include "ui/FramedScreen.h"
#include "ui/ImageView.h"
#include "ui/KeyRules.h"
#include "ui/KeyTable.h"
#include "ui/Label.h"
#include "ui/MBButtonMenuViewController.h"
#include "ui/Notice.h"
#include "ui/Palette.h"
#include "ui/Screen.h"
#include "ui/ScreenStack.h"
#include "ui/ScrollArea.h"
#include "ui/StageMetrics.h"
#include "ui/Table.h"
#include "ui/TextField.h"

// The types of this folder under the names that QML knows them by.
namespace kestrix::ui::qml {

// What others inherit. They name it in full: by that name the tools look for it.
struct ControlType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::Control)
    QML_ANONYMOUS
};

struct LabelType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::Label)
    QML_NAMED_ELEMENT(Label)
    QML_UNCREATABLE("belongs to its screen")
};

struct ImageViewType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::ImageView)
    QML_NAMED_ELEMENT(ImageView)
    QML_UNCREATABLE("belongs to its screen")
};

struct ButtonType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::Button)
    QML_NAMED_ELEMENT(Button)
    QML_UNCREATABLE("belongs to its screen")
};

struct TextFieldType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::TextField)
    QML_NAMED_ELEMENT(TextField)
    QML_UNCREATABLE("belongs to its screen")
};

struct AlertsType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::Alerts)
    QML_NAMED_ELEMENT(Alerts)
    QML_UNCREATABLE("belongs to the application")
};

struct NoticeType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::Notice)
    QML_NAMED_ELEMENT(Notice)
    QML_UNCREATABLE("belongs to the application")
};

struct KeyTableType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::KeyTable)
    QML_NAMED_ELEMENT(KeyTable)
    QML_UNCREATABLE("belongs to its screen")
};

struct ListModelType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::ListModel)
    QML_NAMED_ELEMENT(ListModel)
    QML_UNCREATABLE("belongs to its screen")
};

struct TableType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::Table)
    QML_NAMED_ELEMENT(Table)
    QML_UNCREATABLE("belongs to its screen")
};

struct MBButtonMenuViewControllerType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::MBButtonMenuViewController)
    QML_NAMED_ELEMENT(MBButtonMenuViewController)
    QML_UNCREATABLE("belongs to its screen")
};

struct MenuButtonType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::MenuButton)
    QML_ANONYMOUS
};

struct ScreenType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::Screen)
    QML_NAMED_ELEMENT(Screen)
    QML_UNCREATABLE("belongs to the application")
};

struct FramedScreenType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::FramedScreen)
    QML_NAMED_ELEMENT(FramedScreen)
    QML_UNCREATABLE("belongs to the application")
};

struct ScreenStackType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::ScreenStack)
    QML_NAMED_ELEMENT(ScreenStack)
    QML_UNCREATABLE("belongs to the application")
};

struct ScrollAreaType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::ScrollArea)
    QML_NAMED_ELEMENT(ScrollArea)
    QML_UNCREATABLE("belongs to its screen")
};

struct StageMetricsType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::StageMetrics)
    QML_NAMED_ELEMENT(StageMetrics)
    QML_SINGLETON

  public:
    static StageMetrics* create(QQmlEngine*, QJSEngine*) {
        QJSEngine::setObjectOwnership(&StageMetrics::shared(), QJSEngine::CppOwnership);
        return &StageMetrics::shared();
    }
};

struct KeyRulesType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::KeyRules)
    QML_NAMED_ELEMENT(KeyRules)
    QML_SINGLETON

  public:
    static KeyRules* create(QQmlEngine*, QJSEngine*) {
        QJSEngine::setObjectOwnership(&KeyRules::shared(), QJSEngine::CppOwnership);
        return &KeyRules::shared();
    }
};

// QtQuick has a type named Palette, which the compiled views would find first.
struct PaletteType {
    Q_GADGET
    QML_FOREIGN(kestrix::ui::Palette)
    QML_NAMED_ELEMENT(Colors)
    QML_SINGLETON

  public:
    static Palette* create(QQmlEngine*, QJSEngine*) {
        QJSEngine::setObjectOwnership(&Palette::shared(), QJSEngine::CppOwnership);
        return &Palette::shared();
    }
};

}  // namespace kestrix::ui::qml
