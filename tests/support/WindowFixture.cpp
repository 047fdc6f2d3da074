#include "tests/support/WindowFixture.h"

#include <QCoreApplication>
#include <QCursor>
#include <QScreen>
#include <QtTest/QTest>

#include "apps/common/SimulatorSource.h"
#include "tests/support/EventLoop.h"
#include "ui/DisplayUpdates.h"
#include "ui/SideBarContainer.h"
#include "ui/StageMetrics.h"

namespace kestrix::testing {
namespace {

// 2026-03-04 05:06:07 UTC.
constexpr std::chrono::system_clock::time_point kNow{std::chrono::seconds(1'772'600'767)};

}  // namespace

WindowFixture::WindowFixture() {
    options_.documents = folder_.filePath(QStringLiteral("documents"));
    options_.settings = folder_.filePath(QStringLiteral("kestrix.ini"));
    options_.simulator = app::simulatorSource;
    options_.wait = [](std::chrono::milliseconds) {};
    options_.scheduler = &scheduler_;
    options_.now = [] { return kNow; };
    options_.locale = "en_US";
    options_.zone = "UTC";
    options_.reachability = &network_;
    options_.loadMail = [this] { return mail_.parts(); };
}

WindowFixture::~WindowFixture() {
    stop();
}

void WindowFixture::stop() {
    window_.reset();
    tester_.reset();
    app_.reset();
}

void WindowFixture::start() {
    // What a new process begins with.
    link::BluetoothConnect::bConnectNotified = false;
    link::BluetoothConnect::bDisconnectNotified = false;
    live::MeterDisplay::counters = {};
    ui::SideBarContainer::sideBarDirection = ui::SideBarContainer::kClosed;
    app_ = std::make_unique<shell::AppDelegate>(options_);
    ASSERT_TRUE(app_->applicationDidFinishLaunchingWithOptions()) << app_->problem();
    tester_.emplace(app_->accessories());
}

void WindowFixture::open(QSize size) {
    if (!app_) start();
    window_.reset();  // one at a time
    showWindow(std::make_unique<shell::MainWindow>(*app_), size);
}

void WindowFixture::showWindow(std::unique_ptr<shell::StageWindow> window, QSize size) {
    window_ = std::move(window);
    QObject::connect(window_.get(), &QQuickWindow::frameSwapped, window_.get(), [this] { ++frames_; });
    ASSERT_TRUE(window_->load());
    window_->resize(size);
    QCursor::setPos(100'000, 100'000);  // the mouse is where the test moves it, and nowhere before
    window_->show();
    window_->requestActivate();
    ASSERT_TRUE(spinUntil([this] { return window_->isExposed() && window_->isActive(); }));
    settle();
}

void WindowFixture::resize(QSize size) {
    window_->resize(size);
    ASSERT_TRUE(spinUntil([this, size] { return item("stage").size() == size; }));
    settle();
}

void WindowFixture::settle() {
    do {
        const int drawn = frames_;
        window_->update();
        if (!spinUntil([this, drawn] { return frames_ > drawn; })) {
            FAIL() << "the window does not draw";
        }
    } while (!ui::DisplayUpdates::shared().idle());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::string WindowFixture::databasePath() const {
    return options_.documents.toStdString() + "/kestrix.sqlite";
}

void WindowFixture::showReading(std::string_view scenario) {
    tester_->appear();
    tester_->play(scenario);
    settle();
}

QQuickItem& WindowFixture::item(const QString& name) {
    QQuickItem* const found = findItem(*window_->contentItem(), name);
    if (found == nullptr) ADD_FAILURE() << "there is no " << name.toStdString();
    return found != nullptr ? *found : *window_->contentItem();
}

bool WindowFixture::isShown(const char* name) {
    const QQuickItem* const found = findItem(*window_->contentItem(), QString::fromLatin1(name));
    return found != nullptr && found->isVisible();
}

QRectF WindowFixture::placeOf(QQuickItem& which) {
    return which.mapRectToItem(&item("points"), QRectF(QPointF(), which.size()));
}

QPoint WindowFixture::pointIn(QQuickItem& which, QPointF fraction) {
    return which.mapToScene({which.width() * fraction.x(), which.height() * fraction.y()}).toPoint();
}

void WindowFixture::click(const char* name) {
    QTest::mouseClick(window_.get(), Qt::LeftButton, {}, centreOf(name));
}

void WindowFixture::pressMouse(const char* name) {
    QTest::mousePress(window_.get(), Qt::LeftButton, {}, centreOf(name));
}

void WindowFixture::releaseMouse(QPoint at) {
    QTest::mouseMove(window_.get(), at);
    QTest::mouseRelease(window_.get(), Qt::LeftButton, {}, at);
}

void WindowFixture::tap(const char* name) {
    const QPoint at = centreOf(name);
    QTest::touchEvent(window_.get(), touchScreen()).press(0, at);
    QTest::touchEvent(window_.get(), touchScreen()).release(0, at);
}

void WindowFixture::pressKey(int key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window_.get(), static_cast<Qt::Key>(key), modifiers);
}

std::string WindowFixture::focused() const {
    const QQuickItem* const has = window_->activeFocusItem();
    return has != nullptr ? has->objectName().toStdString() : "nothing";
}

QImage WindowFixture::onDisplay() const {
    // The platform without a display gives its pixels only when they are as many as the points.
    if (window_->devicePixelRatio() != 1) return window_->grabWindow();
    return window_->screen()->grabWindow(window_->winId()).toImage();
}

QRect WindowFixture::pixelsOf(const QRectF& stage) {
    const QRectF inWindow = item("points").mapRectToScene(stage);
    const double ratio = window_->devicePixelRatio();
    return QRectF(inWindow.topLeft() * ratio, inWindow.size() * ratio).toAlignedRect();
}

QPointingDevice* WindowFixture::touchScreen() {
    static QPointingDevice* const device = QTest::createTouchDevice();
    return device;
}

}  // namespace kestrix::testing
