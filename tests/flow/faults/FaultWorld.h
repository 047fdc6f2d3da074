#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "link/BusinessCommunicationDelegate.h"
#include "live/MainViewController.h"
#include "tests/flow/faults/FarEnd.h"
#include "tests/support/TestServices.h"

namespace kestrix::faults {

enum class Link { Gone, Connected };
// Whether a tester's return needs time to be noticed.
enum class Return { InTime, AtOnce };

// The live screen with its link, its session list and a database, and a tester of one kind, whose records are
// counted on their way to the screen. Time passes when the script says so.
class FaultWorld final : public link::BusinessCommunicationDelegate {
  public:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr std::size_t kRecordedFrames = 2;

    explicit FaultWorld(std::unique_ptr<FarEnd> farEnd);
    FaultWorld(const FaultWorld&) = delete;
    FaultWorld& operator=(const FaultWorld&) = delete;
    ~FaultWorld() override;

    // The tester comes, and two measurements are recorded, which is the list that is to be kept. One that
    // plays what is known plays those two frames first.
    void begin();

    FarEnd& farEnd() { return *farEnd_; }
    // The tester's end, of the kind that the row is for.
    template <class End>
    End& as() {
        return dynamic_cast<End&>(*farEnd_);
    }
    // A whole frame, with a reading that no other has.
    Bytes frame();
    // The tester sends it, and the application has heard all of it.
    void hears(const Bytes& bytes);
    // The same, in pieces of one frame's length, one every quarter of a second, and between two of them state
    // and records are as somebody else reads the same bytes. At most one piece in twelve holds no frame.
    void hearsAtPace(const Bytes& bytes);
    // For one that plays what is known: plays on to its end, after which its tester has gone, and on until it
    // begins anew. Records, state and list are as they should be.
    // away: it cannot be found for a while then.
    void playsToItsEnd(bool away = false);
    // The same for one whose line is lost so many times before the end.
    void playsThrough(int losses);
    // The tester sends it, and nobody has time to listen.
    void leavesWaiting(const Bytes& bytes);
    void passes(Milliseconds time);
    // The main thread does nothing for so long, and then all that there is to do.
    void stalls(Milliseconds time);
    // The computer sleeps: the user's clock and the scheduler's go on, and nobody is told that a line is
    // dead.
    void sleeps(Milliseconds time);
    // The same, and the application has noticed.
    void ends() {
        drops([this] { farEnd_->end(); });
    }
    void breaksOff() {
        drops([this] { farEnd_->breakOff(); });
    }
    void leaves() {
        drops([this] { farEnd_->leave(); });
    }
    // Does it, and waits until the application has given its line up.
    void drops(const std::function<void()>& how);
    // The tester is back, its line is open and nothing has come yet.
    void isReachedAgain(Return way = Return::InTime);
    // The tester is back and sends `first`, and then whole frames: the link, its records and the list are as
    // they should be within ten seconds.
    void comesBack(Return way = Return::InTime, const Bytes& first = {});
    // The user's clock says another time.
    void setClock(std::chrono::system_clock::duration ahead) { services_.now += ahead; }

    // The link state shown; the records delivered since the last look, which are those that somebody else
    // reads out of these bytes; and the session list, in the window and in the database, as it was recorded.
    void expect(Link link, const Bytes& records = {}, const char* file = __builtin_FILE(),
                int line = __builtin_LINE());
    void expectRecords(const std::vector<protocol::MeterReading>& expected);
    // Of the search for the tester, for rows about a failing dial.
    platform::FailedStep failedStep() const { return source_->failedStep(); }
    // Waits for it, in turns of the event loop.
    bool becomes(const std::function<bool()>& condition);

    // A second tester. Its end lives as long as this world.
    void addTester(std::unique_ptr<FarEnd> farEnd);

  private:
    class CountingListener;
    struct Ears {  // of the tester's line; outlives its listeners
        std::size_t heard = 0;
        int lines = 0;
        int drops = 0;
    };

    std::vector<protocol::MeterReading> takeRecords() { return std::exchange(records_, {}); }
    void expectList() const;
    void expectLink(Link link) const;
    bool isConnected() const { return screen_->bluestate == link::kConnected; }
    void didReceive3820Data(const protocol::MeterReading& record, bool success) override;
    std::unique_ptr<live::MainViewController> makeScreen();
    void takeTurns();
    bool isListening() const;
    bool opens(Return way);
    void settleDial();
    void sendAll(const Bytes& bytes);
    std::vector<std::string> listRows() const;
    std::vector<std::string> databaseRows() const;

    std::shared_ptr<Ears> ears_ = std::make_shared<Ears>();
    std::unique_ptr<FarEnd> farEnd_;
    std::vector<std::unique_ptr<FarEnd>> others_;
    testing::TestServices services_;
    platform::AccessorySource* source_ = nullptr;  // the manager's
    std::unique_ptr<live::MainViewController> screen_;
    std::vector<protocol::MeterReading> records_;
    std::vector<std::string> kept_;
    int nextReading_ = 1;
};

// A frame with this reading.
Bytes frameOf(int reading);
// One behind the other.
Bytes operator+(Bytes first, const Bytes& second);
// The records that somebody else reads out of a line's bytes, from its first one on.
std::vector<protocol::MeterReading> readingsOf(const Bytes& bytes);

}  // namespace kestrix::faults
