#include "shell/ConsoleSearchViewController.h"

#include "platform/AccessoryManager.h"
#include "ui/Palette.h"
#include "ui/TesterWords.h"

namespace kestrix::shell {

void ConsoleSearchViewController::viewDidLoad() {
    setClosable(false);  // nothing lies behind it
    lblTester.setFont(QStringLiteral("Arial"), 20);
    lblState.setFont(QStringLiteral("Arial"), 16);
    lblWhy.setFont(QStringLiteral("Arial"), 14);
    for (ui::Label* label : {&lblTester, &lblState, &lblWhy}) {
        label->setTextColor(ui::Palette::textOnDark);
        label->setAlignment(Qt::AlignHCenter);
    }
    for (ui::Label* label : {&lblTester, &lblState}) label->setShrinksToFit(true);
    btnOpen.setTitle(tr("Open the console"));
    btnOpen.setBackgroundImage(QStringLiteral("orvo_imformation_bg.png"));
    btnOpen.setAction([this] { pressOpen(); });
    showTester();
}

void ConsoleSearchViewController::viewWillAppear() {
    platform::NotificationCenter& center = platform::NotificationCenter::defaultCenter();
    const auto show = [this](const platform::Notification&) { showTester(); };
    connects_ = center.addObserver(platform::kAccessoryDidConnect, show);
    disconnects_ = center.addObserver(platform::kAccessoryDidDisconnect, show);
    searches_ = center.addObserver(platform::kAccessorySearchDidChange, show);
    showTester();
}

void ConsoleSearchViewController::pressOpen() {
    services_.navigation.present(ui::ScreenId::SessionTransfer, true);
}

void ConsoleSearchViewController::showTester() {
    const ui::TesterWords words = ui::testerWords(services_.accessories);
    lblTester.setText(words.name);
    lblState.setText(words.state);
    lblWhy.setText(words.problem.isEmpty() ? QString() : ui::whyNotConnected(words));
    btnOpen.setHidden(!words.connected);
}

}  // namespace kestrix::shell
