#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/AccessorySource.h"
#include "platform/Dialer.h"
#include "platform/Scheduler.h"

namespace kestrix::platform {

// The search that every kind of source shares: dial, wait for the first bytes, watch for silence, dial again.
class DialingSource final : public AccessorySource {
  public:
    static constexpr Scheduler::Duration kFirstRetry{500};  // doubles with each failure ...
    static constexpr Scheduler::Duration kLastRetry{5000};  // ... up to this
    static constexpr Scheduler::Duration kDialLimit{5000};
    static constexpr Scheduler::Duration kSilenceLimit{3000};

    // uri and name say which tester; the scheduler must outlive the source.
    DialingSource(std::string uri, std::string name, std::unique_ptr<Dialer> dialer, Scheduler& scheduler);
    ~DialingSource() override;

    void start(AccessorySourceObserver& observer) override;
    void stop() override;
    std::string uri() const override { return uri_; }
    SearchState state() const override { return state_; }
    std::string problem() const override { return problem_; }
    std::unique_ptr<ByteChannel> openChannel(const Accessory& accessory,
                                             const std::string& protocol) override;

  private:
    class Tap;

    void dial();
    void dialed(Dialer::Outcome outcome);
    void bytesCame();
    void watchSilence();
    void lost(const std::string& why);
    void retryLater();
    void dropChannel();
    void discardUnread();
    void setProblem(const std::string& problem);

    std::string uri_;
    std::string name_;
    std::unique_ptr<Dialer> dialer_;
    Scheduler& scheduler_;
    AccessorySourceObserver* observer_ = nullptr;

    SearchState state_ = SearchState::Stopped;
    std::string problem_;
    Scheduler::Duration retryDelay_ = kFirstRetry;
    Scheduler::TimePoint lastBytes_{};
    Scheduler::Timer timer_;         // retry, dial limit or silence: what the state waits for
    Scheduler::Timer deliverTimer_;  // bytes that were there before the session opened
    Scheduler::Timer burialTimer_;

    std::unique_ptr<ByteChannel> channel_;
    std::unique_ptr<ByteChannel> buried_;  // a channel must not be destroyed inside its own event
    AccessoryPtr accessory_;
    Tap* tap_ = nullptr;  // the open session's view of the channel; owned by the session
};

}  // namespace kestrix::platform
