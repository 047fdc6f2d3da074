#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/AccessorySource.h"
#include "platform/Dialer.h"
#include "platform/Listener.h"
#include "platform/Scheduler.h"

namespace kestrix::platform {

// The search that every kind of source shares: dial, listen for a whole frame, watch for silence, dial again.
// The bytes by which it judged are the first that the session receives, and it receives a frame only once
// that is whole. While nobody has a session open, bytes are heard and then discarded.
class DialingSource final : public AccessorySource {
  public:
    // From one dial to the next: the shortest pause between them, which doubles with each failure ...
    static constexpr Scheduler::Duration kFirstRetry{500};
    static constexpr Scheduler::Duration kLastRetry{5000};  // ... up to this, counted from the dial's start
    static constexpr Scheduler::Duration kSilenceLimit{3000};
    // A channel that has just been opened has this long to bring something before it is called a problem.
    static constexpr Scheduler::Duration kOpeningTime{1000};

    // uri says which tester; the scheduler must outlive the source.
    DialingSource(std::string uri, std::unique_ptr<Dialer> dialer, ListenerFactory listeners,
                  Scheduler& scheduler);
    ~DialingSource() override;

    void start(AccessorySourceObserver& observer) override;
    void stop() override;
    std::string uri() const override { return uri_; }
    SearchState state() const override { return state_; }
    std::string problem() const override { return currentProblem().text; }
    FailedStep failedStep() const override { return currentProblem().step; }
    std::string peerName() const override { return peerName_; }
    std::unique_ptr<ByteChannel> openChannel(const Accessory& accessory,
                                             const std::string& protocol) override;

  private:
    class Tap;
    struct Problem {
        FailedStep step = FailedStep::None;
        std::string text = {};
    };

    void enter(SearchState state);
    void wasHeard();
    void tellSearch();
    void dial();
    void dialed(Dialer::Outcome outcome);
    void takeIn();
    std::size_t hearWhatWaits();
    void appear();
    void handOn();
    // Where the bytes end that the session may read now, counted from the front of the inbox.
    std::size_t decidedEnd() const;
    void tellSpace();
    void ended(const std::string& why);
    void watchSilence();
    void judgeSilence();
    Problem silence() const;
    bool isOpening() const;
    Problem currentProblem() const;
    void lost(Problem problem);
    void retryLater();
    void dropChannel();
    void setProblem(Problem problem);

    std::string uri_;
    std::unique_ptr<Dialer> dialer_;
    ListenerFactory listeners_;
    Scheduler& scheduler_;
    AccessorySourceObserver* observer_ = nullptr;

    SearchState state_ = SearchState::Stopped;
    Problem problem_;
    std::string peerName_;
    std::uint32_t attempt_ = 0;  // tells the answer to this dial from one that comes too late
    Scheduler::Duration retryDelay_ = kFirstRetry;
    Scheduler::TimePoint dialedAt_{};
    Scheduler::TimePoint lastFrame_{};      // or when the channel was opened
    Scheduler::Duration asleepAtFrame_{0};  // how long the computer had slept until then
    bool bytesSinceFrame_ = false;
    Scheduler::Timer timer_;          // retry, dial limit or silence: what the state waits for
    Scheduler::Timer moreTimer_;      // the channel held more than one turn may take
    Scheduler::Timer greetingTimer_;  // the first space event of a session
    Scheduler::Timer burialTimer_;

    std::unique_ptr<ByteChannel> channel_;
    std::unique_ptr<Listener> listener_;
    std::vector<std::uint8_t>
        inbox_;                   // heard, and waiting for the session (or for the rest of the first frame)
    std::size_t inboxTaken_ = 0;  // bytes at its front that the session has read
    std::vector<std::unique_ptr<ByteChannel>>
        buried_;  // a channel must not be destroyed inside its own event
    AccessoryPtr accessory_;
    Tap* tap_ = nullptr;  // the open session's view of the channel; owned by the session
};

}  // namespace kestrix::platform
