#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <memory>
#include <string>
#include <vector>

#include "live/MainViewController.h"
#include "tests/live/DisplayFixture.h"
#include "tests/support/FakeNetwork.h"
#include "tests/support/FakeSource.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/ManualScheduler.h"
#include "ui/ScreenNotifications.h"
#include "ui/SideBarContainer.h"

namespace kestrix::live {

using Log = std::vector<std::string>;

// What the screen asks of what stands around it, in order: "present 1 animated", "side bar 2".
class LoggedNavigation final : public ui::Navigation {
  public:
    explicit LoggedNavigation(Log& log) : log_(log) {}
    bool has(ui::ScreenId) const override { return true; }
    void present(ui::ScreenId id, bool animated) override {
        log_.push_back("present " + std::string(ui::nameOf(id)) + (animated ? " animated" : ""));
    }
    void dismiss(bool) override { log_.emplace_back("dismiss"); }

  private:
    Log& log_;
};

class LoggedContainer final : public ui::SideBarContainer {
  public:
    explicit LoggedContainer(Log& log) : log_(log) { becomeShared(); }
    void showSideBarControllerWithDirection(std::int32_t direction) override {
        log_.push_back("side bar " + std::to_string(direction));
    }

  private:
    Log& log_;
};

// Remembers what was measured, and answers with the test's height.
class FixedTextMeasure final : public ui::TextMeasure {
  public:
    double wrappedHeight(const QString& text, const QString& family, int size, double width,
                         double maxHeight) const override {
        measured = {text.toStdString(), family.toStdString(), size, width, maxHeight};
        return height;
    }
    struct Measured {
        std::string text, family;
        int size = 0;
        double width = 0, maxHeight = 0;
    };
    mutable Measured measured;
    double height = 0;
};

// The live screen with a tester that comes and goes as the test says, and a clock of the test's own. Screen
// and link share one store, as in the application.
class MainViewFixture : public ::testing::Test {
  protected:
    MainViewFixture() {
        resetProcessState();
        auto source = std::make_unique<testing::FakeSource>();
        source_ = source.get();
        manager_.addSource(std::move(source));
        storage::ServiceDao(documents_).createTable();
    }
    ~MainViewFixture() override { resetProcessState(); }
    static void resetProcessState() {
        resetDisplayState();
        link::BluetoothConnect::bConnectNotified = false;
        link::BluetoothConnect::bDisconnectNotified = false;
        link::BluetoothConnect::bBlueConnected = false;
        ui::SideBarContainer::sideBarDirection = 0;
    }

    // A screen that is not loaded yet.
    std::unique_ptr<MainViewController> makeScreen() { return makeScreen(defaults_); }
    std::unique_ptr<MainViewController> makeScreen(platform::UserDefaults& linkDefaults) {
        return std::make_unique<MainViewController>(ui::Services{
                                                        .defaults = defaults_,
                                                        .documents = documents_,
                                                        .scheduler = scheduler_,
                                                        .navigation = navigation_,
                                                        .notice = notice_,
                                                        .alerts = alerts_,
                                                        .textMeasure = *textMeasure_,
                                                        .timeText = timeText_,
                                                        .stampText = timeText_,
                                                        .now =
                                                            [this] {
                                                                const auto now = now_;
                                                                now_ += clockStep_;
                                                                return now;
                                                            },
                                                        .accessories = manager_,
                                                        .reachability = network_,
                                                        .loadMail = {},
                                                        .openAddress = [](const QString&) { return false; },
                                                        .wait = [](std::chrono::milliseconds) {},
                                                    },
                                                    [this, &linkDefaults] {
                                                        if (whenTheLinkIsMade_) whenTheLinkIsMade_();
                                                        return std::make_unique<link::BluetoothConnect>(
                                                            manager_, linkDefaults,
                                                            [](std::chrono::milliseconds) {});
                                                    });
    }
    MainViewController& start() {
        screen_ = makeScreen();
        screen_->loadView();
        return *screen_;
    }
    // A tester is there already.
    MainViewController& startConnected() {
        if (manager_.connectedAccessories().empty()) source_->appear(tester(1));
        return start();
    }
    void receive(const protocol::MeterReading& record) { screen_->didReceive3820Data(record, true); }
    static void post(std::string_view name, const std::any& object = {}) {
        platform::NotificationCenter::defaultCenter().post({name, object});
    }
    void postState(const char* state) { post(link::Orvoblueviewnotification, std::string(state)); }

    platform::AccessoryPtr tester(std::uint32_t id) {
        return std::make_shared<platform::Accessory>(
            platform::Accessory{id, "Tester", {"protocol"}, nullptr, source_});
    }
    int storedState() const { return defaults_.integerForKey(QStringLiteral("bluestate")); }
    std::vector<storage::MeasureData> storedMeasures() const {
        return storage::ServiceDao(documents_).findMeasureForm(true);
    }
    std::string rightImage() const { return screen_->Rightbtn.image().toStdString(); }
    std::string leftImage() const { return screen_->Leftbtn.image().toStdString(); }
    Log takenLog() { return std::exchange(log_, {}); }

    QTemporaryDir folder_;
    platform::DocumentsFolder documents_{folder_.path()};
    platform::UserDefaults defaults_{folder_.filePath(QStringLiteral("kestrix.ini"))};
    testing::ManualScheduler scheduler_;
    platform::AccessoryManager manager_;
    testing::FakeSource* source_ = nullptr;
    Log log_;
    LoggedNavigation navigation_{log_};
    ui::Notice notice_{scheduler_};
    ui::Alerts alerts_;
    FixedTextMeasure fixedMeasure_;
    const ui::TextMeasure* textMeasure_ = &fixedMeasure_;
    platform::DateText timeText_{ui::kTimePattern, "en_US", "UTC"};
    testing::FakeNetwork network_;
    std::chrono::system_clock::time_point now_ =
        std::chrono::sys_days(std::chrono::year(2024) / 6 / 3) + std::chrono::hours(9);
    std::chrono::seconds clockStep_{0};
    std::function<void()> whenTheLinkIsMade_;
    std::unique_ptr<MainViewController> screen_;
};

}  // namespace kestrix::live
