#pragma once

#include <QUrl>

#include <memory>

#include "ui/ScreenStack.h"
#include "ui/Table.h"

namespace kestrix::shell {

// A presented screen that is nothing but a table.
class TableScreen final : public ui::Screen {
  public:
    explicit TableScreen(ui::ScreenId id) : Screen(id) {}

    static void registerAs(ui::ScreenId id, ui::ScreenStack& screens) {
        screens.registerScreen(
            id, [id] { return std::make_unique<TableScreen>(id); },
            QUrl(QStringLiteral("qrc:/tests/TableScreen.qml")));
    }

    ui::ListModel rows{{{QStringLiteral("Name"), QStringLiteral("Name"), 0, 100},
                        {QStringLiteral("Text"), QStringLiteral("Text"), 101, 219}}};
    ui::Table table{*this, "table", rows};
};

}  // namespace kestrix::shell
