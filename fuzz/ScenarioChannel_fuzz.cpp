// Any scenario played through its channel, the listener and the source that judges it, on a clock of the
// fuzzer's: no turn of the event loop is without end, nothing grows, and a tester that is there was heard
// within the silence limit. The first byte chooses the speed.
#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <variant>

#include "link/FrameListener.h"
#include "platform/DialingSource.h"
#include "platform/GeneratedChannel.h"
#include "simulator/Player.h"
#include "simulator/Scenario.h"
#include "tests/support/ManualScheduler.h"

namespace {

using namespace kestrix;
using std::chrono::milliseconds;

constexpr int kTurns = 2000;
constexpr int kMostPieces = 50'000;
constexpr int kMostPiecesInATurn = 20'000;
constexpr std::size_t kMostInATurn = 2 * platform::ByteChannel::kBufferLimit;

void require(bool holds) {
    if (!holds) std::abort();
}

class Producer final : public platform::ByteProducer {
  public:
    Producer(simulator::Scenario scenario, bool flatOut, int& pieces)
        : player_(std::move(scenario), 1), flatOut_(flatOut), pieces_(pieces) {}
    bool next(Piece& piece) override {
        if (player_.finished()) return false;
        ++pieces_;
        simulator::Emission emission = player_.next();
        piece = {flatOut_ ? milliseconds(0) : emission.wait, std::move(emission.bytes), emission.closes};
        return true;
    }

  private:
    simulator::Player player_;
    bool flatOut_;
    int& pieces_;
};

class Session final : public platform::AccessorySourceObserver {
  public:
    void appeared(const platform::AccessoryPtr& accessory) override {
        require(!there_);
        there_ = true;
        channel_ = accessory->opener->openChannel(*accessory, accessory->protocolStrings.front());
        require(channel_ != nullptr);
        channel_->events.bytesAvailable = [this] { readAll(); };
    }
    void disappeared(const platform::AccessoryPtr&) override {
        require(there_);
        there_ = false;
    }
    std::size_t takeRead() { return std::exchange(read_, 0); }

  private:
    void readAll() {
        std::array<std::uint8_t, 1000> buffer;
        for (std::ptrdiff_t count = 0; (count = channel_->read(buffer.data(), buffer.size())) > 0;)
            read_ += static_cast<std::size_t>(count);
    }
    std::unique_ptr<platform::ByteChannel> channel_;
    std::size_t read_ = 0;
    bool there_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool flatOut = data[0] % 2 == 0;
    auto parsed = simulator::parseScenario({reinterpret_cast<const char*>(data + 1), size - 1});
    const auto* scenario = std::get_if<simulator::Scenario>(&parsed);
    if (scenario == nullptr) return 0;

    int pieces = 0;
    testing::ManualScheduler scheduler;
    Session session;
    platform::DialingSource source(
        "fuzz:",
        std::make_unique<platform::GeneratedDialer>(
            [&](std::string&) { return std::make_unique<Producer>(*scenario, flatOut, pieces); }, scheduler),
        link::makeFrameListener, scheduler);
    source.start(session);
    std::size_t total = 0;
    for (int turn = 0; turn < kTurns && total < 2'000'000 && pieces < kMostPieces; ++turn) {
        const int before = pieces;
        if (!scheduler.runOne()) break;
        require(pieces - before <= kMostPiecesInATurn);
        const std::size_t read = session.takeRead();
        require(read <= kMostInATurn);
        total += read;
    }
    source.stop();
    require(source.state() == platform::SearchState::Stopped);
    return 0;
}
