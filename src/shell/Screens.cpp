#include "shell/Screens.h"

#include <QCoreApplication>

#include "ui/FramedScreen.h"

namespace kestrix::shell {

const std::vector<ScreenRow>& screens() {
    static const std::vector<ScreenRow> rows{
        // With its #include "folder/NameViewController.h" above:
        // {ui::ScreenId::Name, QT_TRANSLATE_NOOP("Screens", "Title"),
        //  make<folder::NameViewController>, "Folder/NameView.qml", {{"20-name"}}},
    };
    return rows;
}

void registerScreen(const ScreenRow& row, ui::ScreenStack& stack, const ui::Services& services) {
    const auto makeScreen = [row, services] {
        std::unique_ptr<ui::Screen> screen = row.make(row.id, services);
        if (auto* framed = qobject_cast<ui::FramedScreen*>(screen.get()))
            framed->setTitle(QCoreApplication::translate("Screens", row.title));
        return screen;
    };
    stack.registerScreen(row.id, makeScreen,
                         QUrl(QStringLiteral("qrc:/qt/qml/Kestrix/") + QLatin1String(row.view)));
}

}  // namespace kestrix::shell
