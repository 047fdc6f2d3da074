#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/Dialer.h"
#include "tests/support/FakeChannel.h"

namespace kestrix::testing {

// A dialer that answers as the test says: with a FakeChannel on the test's line, or with a problem.
class FakeDialer final : public platform::Dialer {
  public:
    void dial(Done done) override {
        ++dials;
        done_ = std::move(done);
        if (answersAtOnce) answer();
    }
    void cancel() override {
        ++cancels;
        if (!answersAfterCancel) done_ = nullptr;
    }
    void heard() override { ++heards; }
    std::chrono::milliseconds timeLimit() const override { return limit; }

    void answer() {
        Outcome outcome{nullptr, step, problem, name};
        if (line != nullptr) {
            line->ended = false;
            outcome = {std::make_unique<FakeChannel>(*line), platform::FailedStep::None, {}, name};
        }
        std::exchange(done_, nullptr)(std::move(outcome));
    }
    bool dialing() const { return static_cast<bool>(done_); }

    FakeLine* line = nullptr;  // none: the dial fails
    platform::FailedStep step = platform::FailedStep::Refused;
    std::string problem = "nobody there";
    std::string name;  // of the peer
    std::chrono::milliseconds limit{5000};
    bool answersAtOnce = true;
    bool answersAfterCancel = false;  // as no dialer should
    int dials = 0;
    int cancels = 0;
    int heards = 0;

  private:
    Done done_;
};

}  // namespace kestrix::testing
