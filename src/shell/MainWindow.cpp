#include "shell/MainWindow.h"

#include <QKeyEvent>

#include "link/BluetoothConnect.h"
#include "shell/WindowTitle.h"

namespace kestrix::shell {

MainWindow::MainWindow(AppDelegate& application)
    : StageWindow(QUrl(QStringLiteral("qrc:/qt/qml/Kestrix/Shell/Root.qml"))), application_(application) {
    takeRememberedPlace();
    showTitle(link::kNotConnected);
    linkStates_ = platform::NotificationCenter::defaultCenter().addObserver(
        link::Orvoblueviewnotification, [this](const platform::Notification& notification) {
            const auto* const state = platform::objectOf<std::string>(notification);
            showTitle(state != nullptr ? QString::fromStdString(*state).toInt() : link::kNotConnected);
        });
    // No reading stands on the display while the wait for a lost tester blocks.
    application_.setBeforeWait([this] { paintNow(); });
    application_.setSecondStart([this] { bringForward(); });
}

MainWindow::~MainWindow() {
    rememberPlace();
    application_.setBeforeWait(nullptr);
    application_.setSecondStart(nullptr);
}

bool MainWindow::load() {
    takeRememberedPlace();  // by the settings as they are now
    const bool loaded = loadViews({
        {QStringLiteral("container"), QVariant::fromValue(&application_.viewController())},
        {QStringLiteral("screens"), QVariant::fromValue(&application_.screens())},
        {QStringLiteral("notice"), QVariant::fromValue(&application_.notice())},
        {QStringLiteral("alerts"), QVariant::fromValue(&application_.alerts())},
    });
    showTitle(application_.settings().integerForKey(QLatin1String(link::kBlueState)));
    return loaded;
}

void MainWindow::takeRememberedPlace() {
    const WindowPlace standard{.position = {}, .size = kSize};
    takePlace(rememberedPlace(application_.settings()).value_or(standard));
}

void MainWindow::rememberPlace() {
    if (const std::optional<WindowPlace> stands = place()) {
        shell::rememberPlace(application_.settings(), *stands);
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    rememberPlace();
    StageWindow::closeEvent(event);
}

bool MainWindow::pressKey(const QKeyEvent& event) {
    if (event.keyCombination() != QKeyCombination(Qt::Key_F1)) return StageWindow::pressKey(event);
    showHelp();
    return true;
}

// Behind a presented screen or an alert, and beside a side bar, the live screen answers no key.
void MainWindow::showHelp() {
    if (application_.screens().count() > 0 || application_.alerts().isShown() ||
        application_.viewController().sideBarShowing() ||
        !application_.viewController().isUserInteractionEnabled())
        return;
    application_.mainView().pressBCH();
}

void MainWindow::showTitle(std::int32_t linkState) {
    const auto accessories = application_.accessories().connectedAccessories();
    const QString tester =
        accessories.empty() ? QString() : QString::fromStdString(accessories.front()->name);
    setTitle(windowTitle(linkState, tester, application_.simulated()));
}

}  // namespace kestrix::shell
