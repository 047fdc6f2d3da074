#include "shell/StageWindow.h"

#include <QIcon>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickImageProvider>
#include <QResizeEvent>
#include <QScreen>

#include <algorithm>

#include "artwork/Pictures.h"
#include "ui/DisplayUpdates.h"
#include "ui/Palette.h"
#include "ui/StageMetrics.h"

namespace kestrix::shell {
namespace {

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

StageWindow::StageWindow(const QUrl& views) : views_(views) {
    artwork::load();
    setColor(ui::Palette::stage);
    setResizeMode(SizeRootObjectToView);
    setMinimumSize({160, 240});
    engine()->addImageProvider(QStringLiteral("artwork"), new Pictures);
    engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    // Another thread reads the views while the application starts; `loadViews` finds them read.
    new QQmlComponent(engine(), views_, QQmlComponent::Asynchronous, this);
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
    connect(this, &QWindow::screenChanged, this, [this] { fitStage(); });
    // The scale of a screen may change under the window, which nothing tells in so many words.
    connect(this, &QQuickWindow::afterAnimating, this, [this] { fitStage(); });
}

StageWindow::~StageWindow() {
    ui::DisplayUpdates::shared().pace(nullptr);
}

bool StageWindow::loadViews(const QVariantMap& properties) {
    setInitialProperties(properties);
    setSource(views_);
    return status() == Ready;
}

void StageWindow::paintNow() {
    ui::DisplayUpdates::shared().flush();
    if (!isExposed()) return;
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(this, &request);
}

void StageWindow::bringForward() {
    setWindowStates(windowStates() & ~Qt::WindowMinimized);
    raise();
    requestActivate();
}

void StageWindow::takePlace(WindowPlace wanted) {
    wanted.size = wanted.size.expandedTo(minimumSize());
    const WindowPlace place = placeOnScreens(wanted, freeScreens(), kUsualFrame);
    if (place.position) setFramePosition(*place.position);
    resize(place.size);
    lastNormal_ = {place.position.value_or(QPoint()), place.size};
    if (place.fullScreen) setWindowStates(Qt::WindowFullScreen);
    fitStage();
}

std::optional<WindowPlace> StageWindow::place() const {
    if (!shown_) return std::nullopt;
    const bool fullScreen = (windowStates() & Qt::WindowFullScreen) != 0;
    return WindowPlace{
        .position = lastNormal_.topLeft(), .size = lastNormal_.size(), .fullScreen = fullScreen};
}

// Now that the desktop has drawn the frame around it. A size that somebody else gave it stays.
void StageWindow::keepOnScreen() {
    if (windowStates() != Qt::WindowNoState || size() != lastNormal_.size()) return;
    const WindowPlace fitted = placeOnScreens({.position = framePosition(), .size = size()},
                                              {screen()->availableGeometry()}, sizeOf(frameMargins()));
    if (fitted.size != size()) resize(fitted.size);
}

void StageWindow::resizeEvent(QResizeEvent* event) {
    fitStage();
    QQuickView::resizeEvent(event);
}

void StageWindow::exposeEvent(QExposeEvent* event) {
    // This exposure is drawn at once: with what is known now, not with what was told last.
    if (isExposed()) ui::DisplayUpdates::shared().flush();
    QQuickView::exposeEvent(event);
    if (!isExposed()) return ui::DisplayUpdates::shared().frameDone();  // one that was asked for never comes
    if (!shown_) keepOnScreen();
    shown_ = true;
}

// An X server tells a key that is held as one that is released and pressed again in the same moment, which
// the toolkit does not always see through.
bool StageWindow::comesOfHoldingTheKey(const QKeyEvent& event) const {
    return repeatsArePresses_ && !event.isAutoRepeat() && event.key() == releasedKey_ && releasedAt_ != 0 &&
           event.timestamp() == releasedAt_;
}

void StageWindow::keyReleaseEvent(QKeyEvent* event) {
    releasedKey_ = event->key();
    releasedAt_ = event->timestamp();
    QQuickView::keyReleaseEvent(event);
}

void StageWindow::keyPressEvent(QKeyEvent* event) {
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
bool StageWindow::isOfAnotherMouseButton(const QMouseEvent& event) {
    if (event.type() == QEvent::MouseButtonRelease) {
        const bool other = event.button() != mouseButton_;
        if (!other) mouseButton_ = Qt::NoButton;
        return other;
    }
    const bool other = event.buttons() != event.button();
    if (!other) mouseButton_ = event.button();
    return other;
}

bool StageWindow::event(QEvent* event) {
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

bool StageWindow::pressKey(const QKeyEvent& event) {
    struct Key {
        QKeyCombination key;
        void (StageWindow::*action)();
    };
    static constexpr Key kKeys[] = {
        {Qt::ControlModifier | Qt::Key_Q, &StageWindow::quit},
        {Qt::ControlModifier | Qt::Key_W, &StageWindow::closeIt},
        {Qt::Key_F11, &StageWindow::toggleFullScreen},
    };
    for (const Key& row : kKeys) {
        if (row.key != event.keyCombination()) continue;
        (this->*row.action)();
        return true;
    }
    return false;
}

void StageWindow::quit() {
    QCoreApplication::quit();
}

void StageWindow::closeIt() {
    close();
}

void StageWindow::toggleFullScreen() {
    setWindowStates(windowStates() ^ Qt::WindowFullScreen);
}

void StageWindow::fitStage() {
    if (shown_ && windowStates() == Qt::WindowNoState) lastNormal_ = {framePosition(), size()};
    ui::StageMetrics::shared().fit(size(), devicePixelRatio());
}

}  // namespace kestrix::shell
