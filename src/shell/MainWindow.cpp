#include "shell/MainWindow.h"

#include <QCoreApplication>
#include <QIcon>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QResizeEvent>

#include "artwork/Pictures.h"
#include "ui/DisplayUpdates.h"
#include "ui/StageMetrics.h"

namespace kestrix::shell {
namespace {

const QUrl kViews(QStringLiteral("qrc:/qt/qml/Kestrix/Shell/Root.qml"));

}  // namespace

MainWindow::MainWindow(AppDelegate& application) : application_(application) {
    artwork::load();
    setTitle(QStringLiteral("Kestrix"));
    setColor(QColor(14, 22, 38));
    setResizeMode(SizeRootObjectToView);
    setMinimumSize({160, 240});
    resize(kSize);
    fitStage(kSize);
    engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    // Another thread reads the views while the application starts; `load` finds them read.
    new QQmlComponent(engine(), kViews, QQmlComponent::Asynchronous, this);
    ui::DisplayUpdates::shared().pace([this] {
        if (!isExposed()) return false;
        update();
        return true;
    });
    connect(this, &QQuickWindow::frameSwapped, this, [] { ui::DisplayUpdates::shared().frameDone(); });
    // Reading it takes as long as all pictures of the live screen: not before that is seen.
    const auto showIcon = [this] { setIcon(QIcon(QStringLiteral(":/artwork/4/kestrix.png"))); };
    connect(this, &QQuickWindow::frameSwapped, this, showIcon,
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    // No reading stands on the display while the wait for a lost tester blocks.
    application_.setBeforeWait([this] { paintNow(); });
    application_.setSecondStart([this] { bringForward(); });
    connect(this, &QWindow::screenChanged, this, [this] { fitStage(size()); });
}

MainWindow::~MainWindow() {
    application_.setBeforeWait(nullptr);
    application_.setSecondStart(nullptr);
    ui::DisplayUpdates::shared().pace(nullptr);
}

bool MainWindow::load() {
    setInitialProperties({
        {QStringLiteral("mainView"), QVariant::fromValue(&application_.mainView())},
        {QStringLiteral("screens"), QVariant::fromValue(&application_.screens())},
        {QStringLiteral("notice"), QVariant::fromValue(&application_.notice())},
        {QStringLiteral("alerts"), QVariant::fromValue(&application_.alerts())},
    });
    setSource(kViews);
    return status() == Ready;
}

void MainWindow::paintNow() {
    ui::DisplayUpdates::shared().flush();
    if (!isExposed()) return;
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(this, &request);
}

void MainWindow::bringForward() {
    setWindowStates(windowStates() & ~Qt::WindowMinimized);
    raise();
    requestActivate();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    fitStage(event->size());
    QQuickView::resizeEvent(event);
}

void MainWindow::fitStage(const QSize& size) {
    ui::StageMetrics::shared().fit(size, devicePixelRatio());
}

}  // namespace kestrix::shell
