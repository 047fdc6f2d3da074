#pragma once

#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/FakeNetwork.h"
#include "tests/support/ManualScheduler.h"
#include "ui/Services.h"

namespace kestrix::testing {

// The services of a screen that is tested alone: time stands still, and what it asks of its surroundings is
// written down.
class TestServices final : private ui::Navigation, private ui::TextMeasure {
  public:
    ui::Services services() {
        return {
            .defaults = defaults,
            .documents = documents,
            .scheduler = scheduler,
            .navigation = *this,
            .notice = notice,
            .alerts = alerts,
            .textMeasure = fonts != nullptr ? *fonts : *this,
            .timeText = timeText,
            .stampText = stampText,
            .now = [this] { return now; },
            .accessories = accessories,
            .chooseTester = chooseTester,
            .makeListings = makeListings,
            .reachability = network,
            .loadMail = loadMail,
            .openAddress =
                [this](const QString& address) {
                    addresses.push_back(address.toStdString());
                    return opensAddresses;
                },
            .wait = [](std::chrono::milliseconds) {},
            .slideDuration = std::chrono::milliseconds(0),
        };
    }

    QTemporaryDir folder;
    testing::ManualScheduler scheduler;
    platform::UserDefaults defaults{folder.filePath(QStringLiteral("kestrix.ini"))};
    platform::DocumentsFolder documents{folder.path()};
    platform::AccessoryManager accessories;
    platform::DateText timeText{ui::kTimePattern, "en_US", "UTC"};
    platform::DateText stampText{ui::kStampPattern, "en_US", "UTC"};
    testing::FakeNetwork network;
    std::function<ui::ChosenTester(const std::string&)> chooseTester = [this](const std::string& uri) {
        asked.push_back("choose " + uri);
        return ui::ChosenTester{};
    };
    std::function<std::vector<std::unique_ptr<platform::AccessoryListing>>()> makeListings = [] {
        return std::vector<std::unique_ptr<platform::AccessoryListing>>();
    };
    std::function<platform::MailParts()> loadMail = [] { return platform::MailParts{}; };
    std::chrono::system_clock::time_point now{std::chrono::sys_days(std::chrono::year(2024) / 6 / 3)};
    ui::Notice notice{scheduler};
    ui::Alerts alerts;
    std::vector<std::string> asked;       // "present SaveData animated", "dismiss"
    std::optional<ui::ScreenId> missing;  // a screen that there is not
    std::vector<std::string> addresses;   // of the web pages that were to be opened
    bool opensAddresses = true;
    double textHeight = 20;                  // of every text
    const ui::TextMeasure* fonts = nullptr;  // measure in its place; not owned

  private:
    bool has(ui::ScreenId id) const override { return id != missing; }
    void present(ui::ScreenId id, bool animated) override {
        asked.push_back(std::string("present ") + ui::nameOf(id) + (animated ? " animated" : ""));
    }
    void dismiss(bool animated) override { asked.emplace_back(animated ? "dismiss animated" : "dismiss"); }
    double wrappedHeight(const QString&, const QString&, int, double, double) const override {
        return textHeight;
    }
};

}  // namespace kestrix::testing
