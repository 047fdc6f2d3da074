#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/BluezProfile.h"
#include "platform/Dialer.h"
#include "platform/LastUsed.h"

namespace kestrix::platform {

// Reaches a tester at the serial port of a paired Bluetooth device: of the one with this address, or of
// whichever is a tester. In the latter case each dial tries the device that was a tester last and one other,
// the others in turn, so that neither a printer nor many devices out of reach keep it from the tester for
// long.
class BluezDialer final : public Dialer {
  public:
    // BlueZ gives up a device that does not answer after 5.1 s; one that does may take some more until its
    // port is open. The second is short enough for a tester that returns to be back within 10 s.
    static constexpr Scheduler::Duration kDeviceLimit{8000};
    static constexpr Scheduler::Duration kOtherLimit{6000};
    // A device that was no tester when it was connected is left alone for this long.
    static constexpr Scheduler::Duration kNoTesterPause{60'000};
    // While somebody searches, each device is heard many times a second: a dial for that at most this often.
    static constexpr Scheduler::Duration kHeardPause{2000};

    // address: empty for any device.
    BluezDialer(std::string address, LastUsed lastUsed, std::shared_ptr<BluezProfile> profile);
    ~BluezDialer() override;

    void dial(Done done) override;
    void cancel() override;
    void heard() override;
    std::chrono::milliseconds timeLimit() const override {
        return BluezService::kAnswerLimit + 2 * kDeviceLimit + std::chrono::seconds(1);
    }

  private:
    // A device that a dial may try.
    struct Candidate {
        std::string address;
        std::string path;
        Scheduler::Duration limit = kDeviceLimit;
    };

    void noteWhatWasNoTester();
    void begin();
    std::vector<Candidate> candidates() const;
    void chooseFrom(std::vector<Candidate> candidates);
    void tryNext();
    void tried(BluezProfile::Result result);
    void fail(const BluezProblem& problem);
    BluezProblem ownProblem() const;
    // Each device with the reason that is known of it.
    BluezProblem problemOfAll() const;
    std::string lastUsedAddress() const;
    void hear(const BluezService::News& news);
    bool isWorthATry(const std::string& address);
    BluezService& service() const { return *profile_->service(); }

    std::string address_;
    LastUsed lastUsed_;
    std::string lastUsedHere_;  // by this dialer
    std::shared_ptr<BluezProfile> profile_;
    std::shared_ptr<BluezService::Observer> observer_;

    Done done_;
    bool waitsForService_ = false;
    std::deque<Candidate> queue_;
    Candidate current_;
    BluezProfile::Attempt attempt_;
    Scheduler::Timer limit_;

    std::string opened_;  // the address of the device whose channel was opened and not heard yet
    std::string silent_;  // that of the device whose channel the dial before this one opened in vain
    std::string turn_;    // of the other device that was tried last
    std::map<std::string, Scheduler::TimePoint> leftAloneUntil_;
    std::map<std::string, BluezProblem> reasons_;
    Scheduler::TimePoint heardPauseUntil_{};
};

}  // namespace kestrix::platform
