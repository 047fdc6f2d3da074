#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <any>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "link/BluetoothConnect.h"
#include "tests/support/FakeSource.h"

namespace kestrix::link {

class RecordKeeper final : public BusinessCommunicationDelegate {
  public:
    void didReceive3820Data(const protocol::MeterReading& record, bool success) override {
        records.push_back(record);
        successes.push_back(success);
    }
    std::vector<protocol::MeterReading> records;
    std::vector<bool> successes;
};

// A link over a source of the test's own.
class BluetoothConnectTest : public ::testing::Test {
  protected:
    void SetUp() override {
        BluetoothConnect::bConnectNotified = false;
        BluetoothConnect::bDisconnectNotified = false;
        BluetoothConnect::bBlueConnected = false;
        auto source = std::make_unique<testing::FakeSource>();
        source_ = source.get();
        manager_.addSource(std::move(source));
        states_ = platform::NotificationCenter::defaultCenter().addObserver(
            Orvoblueviewnotification, [this](const platform::Notification& event) {
                log_.push_back("state " + std::any_cast<std::string>(event.object));
            });
    }
    void TearDown() override { EADSessionController::sharedController().closeSession(); }

    platform::AccessoryPtr accessory(std::uint32_t id, std::vector<std::string> protocols = {"tester"}) {
        return std::make_shared<platform::Accessory>(
            platform::Accessory{id, "Tester " + std::to_string(id), std::move(protocols), nullptr, source_});
    }
    void start() {
        connect_.initBlue();
        connect_.setDelegate(&keeper_);
    }
    void startConnected() {
        tester_ = accessory(1);
        source_->appear(tester_);
        start();
        log_.clear();
    }
    std::vector<std::string> readings() const {
        std::vector<std::string> texts;
        for (const protocol::MeterReading& record : keeper_.records) texts.push_back(record.strValue1);
        return texts;
    }
    int storedState() const { return defaults_.integerForKey(QStringLiteral("bluestate")); }

    using Log = std::vector<std::string>;

    QTemporaryDir folder_;
    platform::UserDefaults defaults_{folder_.filePath(QStringLiteral("kestrix.ini"))};
    platform::AccessoryManager manager_;
    testing::FakeSource* source_ = nullptr;
    platform::AccessoryPtr tester_;
    Log log_;  // link states and waits, in order
    BluetoothConnect connect_{manager_, defaults_, [this](std::chrono::milliseconds duration) {
                                  log_.push_back("wait " + std::to_string(duration.count()));
                              }};
    RecordKeeper keeper_;
    platform::NotificationCenter::Subscription states_;
};

}  // namespace kestrix::link
