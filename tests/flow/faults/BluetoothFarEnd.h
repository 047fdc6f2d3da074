#pragma once

#include <memory>

#include "tests/flow/faults/FarEnd.h"
#include "tests/support/FakeBluez.h"
#include "tests/support/PrivateBus.h"

namespace kestrix::faults {

// A tester behind a Bluetooth service on a bus of the test's own.
class BluetoothFarEnd final : public FarEnd {
  public:
    static constexpr const char* kTester = "AA:BB:CC:00:00:01";

    BluetoothFarEnd();
    ~BluetoothFarEnd() override;
    std::unique_ptr<platform::AccessorySource> makeSource(platform::Scheduler& scheduler,
                                                          platform::ListenerFactory listeners) override;
    bool isOpen() override { return bluez_->line(kTester) >= 0 && !bluez_->lineHasEnded(kTester); }
    std::size_t send(std::span<const std::uint8_t> bytes) override;
    void end() override { bluez_->endLine(kTester); }
    void breakOff() override { end(); }
    void leave() override;
    void comeBack() override;
    bool answersDials() const override { return !isSilent_; }

    // What becomes of an attempt to connect from now on.
    void becomes(testing::FakeBluez::Behaviour behaviour);
    // The service takes what comes, and answers nothing.
    void serviceBecomesSilent() {
        isSilent_ = true;
        bluez_->becomeDeaf();
    }
    void serviceAnswersAgain() {
        isSilent_ = false;
        bluez_->hearAgain();
    }
    std::size_t attempts() const { return bluez_->attempts.size(); }
    testing::FakeBluez& bluez() { return *bluez_; }

  private:
    testing::PrivateBus bus_;
    std::unique_ptr<testing::FakeBluez> bluez_;
    testing::FakeBluez::Behaviour behaviour_;
    bool isSilent_ = false;  // to the last attempt
};

}  // namespace kestrix::faults
