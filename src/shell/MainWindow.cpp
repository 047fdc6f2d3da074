#include "shell/MainWindow.h"

#include <QGuiApplication>
#include <QIcon>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickImageProvider>
#include <QResizeEvent>
#include <QScreen>

#include <algorithm>

#include "artwork/Pictures.h"
#include "link/BluetoothConnect.h"
#include "shell/WindowPlace.h"
#include "shell/WindowTitle.h"
#include "ui/DisplayUpdates.h"
#include "ui/Palette.h"
#include "ui/StageMetrics.h"

namespace kestrix::shell {
namespace {

const QUrl kViews(QStringLiteral("qrc:/qt/qml/Kestrix/Shell/Root.qml"));

// The pictures of the artwork for the views: image://artwork/SCALE/NAME.
class Pictures : public QQuickImageProvider {
  public:
    Pictures() : QQuickImageProvider(Image) {}
    QImage requestImage(const QString& id, QSize* size, const QSize&) override {
        const qsizetype slash = id.indexOf(u'/');
        QImage image =
            artwork::picture(id.mid(slash + 1), QStringView(id).first(std::max(slash, qsizetype{0})).toInt());
        if (size != nullptr) *size = image.size();
        return image;
    }
};

// What a frame is thought to add before the desktop has drawn it: a title bar, mostly.
constexpr QSize kUsualFrame{8, 40};

QList<QRect> freeScreens() {
    QList<QRect> areas;
    const auto screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) areas << screen->availableGeometry();
    return areas;
}

QSize sizeOf(const QMargins& frame) {
    return {frame.left() + frame.right(), frame.top() + frame.bottom()};
}

}  // namespace

MainWindow::MainWindow(AppDelegate& application) : application_(application) {
    artwork::load();
    setColor(ui::Palette::stage);
    setResizeMode(SizeRootObjectToView);
    setMinimumSize({160, 240});
    takePlace();
    fitStage();
    showTitle(link::kNotConnected);
    linkStates_ = platform::NotificationCenter::defaultCenter().addObserver(
        link::Orvoblueviewnotification, [this](const platform::Notification& notification) {
            const auto* const state = platform::objectOf<std::string>(notification);
            showTitle(state != nullptr ? QString::fromStdString(*state).toInt() : link::kNotConnected);
        });
    engine()->addImageProvider(QStringLiteral("artwork"), new Pictures);
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
    const auto showIcon = [this] {
        setIcon(QIcon(QPixmap::fromImage(artwork::picture(QStringLiteral("kestrix.png"), 4))));
    };
    connect(this, &QQuickWindow::frameSwapped, this, showIcon,
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    // No reading stands on the display while the wait for a lost tester blocks.
    application_.setBeforeWait([this] { paintNow(); });
    application_.setSecondStart([this] { bringForward(); });
    connect(this, &QWindow::screenChanged, this, [this] { fitStage(); });
    // The scale of a screen may change under the window, which nothing tells in so many words.
    connect(this, &QQuickWindow::afterAnimating, this, [this] { fitStage(); });
}

MainWindow::~MainWindow() {
    rememberPlace();
    application_.setBeforeWait(nullptr);
    application_.setSecondStart(nullptr);
    ui::DisplayUpdates::shared().pace(nullptr);
}

bool MainWindow::load() {
    takePlace();  // by the settings as they are now
    fitStage();
    setInitialProperties({
        {QStringLiteral("container"), QVariant::fromValue(&application_.viewController())},
        {QStringLiteral("screens"), QVariant::fromValue(&application_.screens())},
        {QStringLiteral("notice"), QVariant::fromValue(&application_.notice())},
        {QStringLiteral("alerts"), QVariant::fromValue(&application_.alerts())},
    });
    setSource(kViews);
    showTitle(application_.settings().integerForKey(QLatin1String(link::kBlueState)));
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

void MainWindow::takePlace() {
    const WindowPlace standard{.position = {}, .size = kSize};
    WindowPlace wanted = rememberedPlace(application_.settings()).value_or(standard);
    wanted.size = wanted.size.expandedTo(minimumSize());
    const WindowPlace place = placeOnScreens(wanted, freeScreens(), kUsualFrame);
    if (place.position) setFramePosition(*place.position);
    resize(place.size);
    lastNormal_ = {place.position.value_or(QPoint()), place.size};
    if (place.fullScreen) setWindowStates(Qt::WindowFullScreen);
}

void MainWindow::rememberPlace() {
    if (!shown_) return;
    const bool fullScreen = (windowStates() & Qt::WindowFullScreen) != 0;
    shell::rememberPlace(
        application_.settings(),
        {.position = lastNormal_.topLeft(), .size = lastNormal_.size(), .fullScreen = fullScreen});
}

// Now that the desktop has drawn the frame around it. A size that somebody else gave it stays.
void MainWindow::keepOnScreen() {
    if (windowStates() != Qt::WindowNoState || size() != lastNormal_.size()) return;
    const WindowPlace fitted = placeOnScreens({.position = framePosition(), .size = size()},
                                              {screen()->availableGeometry()}, sizeOf(frameMargins()));
    if (fitted.size != size()) resize(fitted.size);
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    fitStage();
    QQuickView::resizeEvent(event);
}

void MainWindow::exposeEvent(QExposeEvent* event) {
    // This exposure is drawn at once: with what is known now, not with what was told last.
    if (isExposed()) ui::DisplayUpdates::shared().flush();
    QQuickView::exposeEvent(event);
    if (!isExposed()) return ui::DisplayUpdates::shared().frameDone();  // one that was asked for never comes
    if (!shown_) keepOnScreen();
    shown_ = true;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    rememberPlace();
    QQuickView::closeEvent(event);
}

// An X server tells a key that is held as one that is released and pressed again in the same moment, which
// the toolkit does not always see through.
bool MainWindow::comesOfHoldingTheKey(const QKeyEvent& event) const {
    return repeatsArePresses_ && !event.isAutoRepeat() && event.key() == releasedKey_ && releasedAt_ != 0 &&
           event.timestamp() == releasedAt_;
}

void MainWindow::keyReleaseEvent(QKeyEvent* event) {
    releasedKey_ = event->key();
    releasedAt_ = event->timestamp();
    QQuickView::keyReleaseEvent(event);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    if (comesOfHoldingTheKey(*event)) {
        QKeyEvent held(event->type(), event->key(), event->modifiers(), event->text(), true);
        held.setTimestamp(event->timestamp());
        QQuickView::keyPressEvent(&held);
        return event->setAccepted(held.isAccepted());
    }
    if (!event->isAutoRepeat() && pressKey(*event)) return event->accept();
    QQuickView::keyPressEvent(event);
}

// One mouse button at a time: for the views a second one would end the press of the first and begin it anew.
bool MainWindow::isOfAnotherMouseButton(const QMouseEvent& event) {
    if (event.type() == QEvent::MouseButtonRelease) {
        const bool other = event.button() != mouseButton_;
        if (!other) mouseButton_ = Qt::NoButton;
        return other;
    }
    const bool other = event.buttons() != event.button();
    if (!other) mouseButton_ = event.button();
    return other;
}

bool MainWindow::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
            if (isOfAnotherMouseButton(*static_cast<QMouseEvent*>(event))) return true;
            break;
        default:
            break;
    }
    return QQuickView::event(event);
}

bool MainWindow::pressKey(const QKeyEvent& event) {
    struct Key {
        QKeyCombination key;
        void (MainWindow::*action)();
    };
    static constexpr Key kKeys[] = {
        {Qt::ControlModifier | Qt::Key_Q, &MainWindow::quit},
        {Qt::ControlModifier | Qt::Key_W, &MainWindow::closeIt},
        {Qt::Key_F11, &MainWindow::toggleFullScreen},
        {Qt::Key_F1, &MainWindow::showHelp},
    };
    for (const Key& row : kKeys) {
        if (row.key != event.keyCombination()) continue;
        (this->*row.action)();
        return true;
    }
    return false;
}

void MainWindow::quit() {
    QCoreApplication::quit();
}

void MainWindow::closeIt() {
    close();
}

void MainWindow::toggleFullScreen() {
    setWindowStates(windowStates() ^ Qt::WindowFullScreen);
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

void MainWindow::fitStage() {
    if (shown_ && windowStates() == Qt::WindowNoState) lastNormal_ = {framePosition(), size()};
    ui::StageMetrics::shared().fit(size(), devicePixelRatio());
}

}  // namespace kestrix::shell
