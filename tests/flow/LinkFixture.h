#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <any>
#include <string>

#include "apps/common/SimulatorSource.h"
#include "link/BluetoothConnect.h"
#include "link/FrameListener.h"
#include "platform/AccessorySources.h"
#include "tests/support/ManualScheduler.h"

namespace kestrix::testing {

// The road from a source's URI to the records, joined as the application joins it, with time in the test's
// hand.
class LinkFixture : public ::testing::Test, public link::BusinessCommunicationDelegate {
  protected:
    LinkFixture() {
        link::BluetoothConnect::bConnectNotified = false;
        link::BluetoothConnect::bDisconnectNotified = false;
    }
    ~LinkFixture() override { connect_.allRelease(); }

    void start(const std::string& uri) {
        states_ = platform::NotificationCenter::defaultCenter().addObserver(
            link::Orvoblueviewnotification, [this](const platform::Notification& event) {
                stateLog_ += std::any_cast<std::string>(event.object);
            });
        connect_.initBlue();
        connect_.setDelegate(this);
        auto made =
            platform::makeAccessorySource(uri, scheduler_, app::simulatorSource, link::makeFrameListener);
        ASSERT_NE(made.source, nullptr) << made.problem;
        manager_.addSource(std::move(made.source));
        scheduler_.runOne();  // the first dial
    }
    void didReceive3820Data(const protocol::MeterReading& record, bool success) override {
        EXPECT_TRUE(success);
        ++records_;
        last_ = record;
    }
    bool connected() const { return !stateLog_.empty() && stateLog_.back() == '1'; }

    QTemporaryDir folder_;
    ManualScheduler scheduler_;
    platform::UserDefaults defaults_{folder_.filePath(QStringLiteral("kestrix.ini"))};
    platform::AccessoryManager manager_;
    link::BluetoothConnect connect_{manager_, defaults_, [this](std::chrono::milliseconds) { ++waits_; }};
    std::string stateLog_;  // the link states as they were published
    int waits_ = 0;         // of the disconnect handler
    std::size_t records_ = 0;
    protocol::MeterReading last_;

  private:
    platform::NotificationCenter::Subscription states_;
};

}  // namespace kestrix::testing
