#pragma once

#include <utility>

#include "platform/DialingSource.h"
#include "tests/flow/faults/FarEnd.h"
#include "tests/support/FakeDialer.h"

namespace kestrix::faults {

// A line of the test's own: every failure that a channel can tell of, and those that it does not tell of.
class LineFarEnd final : public FarEnd {
  public:
    std::unique_ptr<platform::AccessorySource> makeSource(platform::Scheduler& scheduler,
                                                          platform::ListenerFactory listeners) override {
        auto dialer = std::make_unique<testing::FakeDialer>();
        dialer_ = dialer.get();
        dialer_->line = &line_;
        return std::make_unique<platform::DialingSource>("line:", std::move(dialer), std::move(listeners),
                                                         scheduler);
    }
    bool isOpen() override { return line_.channel != nullptr; }
    std::size_t send(std::span<const std::uint8_t> bytes) override {
        line_.receive(bytes);
        return bytes.size();
    }
    std::size_t leaveWaiting(std::span<const std::uint8_t> bytes) override {
        line_.incoming.insert(line_.incoming.end(), bytes.begin(), bytes.end());
        return bytes.size();
    }
    void tellOfWaiting() override { line_.tellBytes(); }
    void end() override { endWith("the other side has ended it"); }
    void breakOff() override {
        line_.readFails = true;
        endWith("Input/output error");
    }
    void leave() override {
        dialer_->line = nullptr;
        endWith("No such device");
    }
    void comeBack() override {
        line_.readFails = false;
        line_.incoming.clear();
        dialer_->line = &line_;
        dialer_->answersAtOnce = true;
        if (dialer_->dialing()) dialer_->answer();
    }
    bool answersDials() const override { return dialer_->answersAtOnce; }

    // Every dial fails so.
    void fail(platform::FailedStep step) {
        dialer_->step = step;
        dialer_->problem = "it fails";
    }
    void becomeDeafToDials() { dialer_->answersAtOnce = false; }
    // It has failed, and nothing tells of it.
    void failSilently() { line_.ended = true; }
    int dials() const { return dialer_->dials; }

  private:
    void endWith(const char* why) {
        testing::FakeLine& line = line_;
        line.end(why);
        line.readFails = false;
    }

    testing::FakeLine line_;
    testing::FakeDialer* dialer_ = nullptr;  // the source's
};

}  // namespace kestrix::faults
