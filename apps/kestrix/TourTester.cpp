#include "apps/kestrix/TourTester.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <utility>
#include <variant>

#include "platform/ByteChannel.h"
#include "platform/SourcePlace.h"
#include "simulator/Player.h"
#include "simulator/Scenario.h"

namespace kestrix::tour {

struct TourTester::Line {
    std::deque<std::uint8_t> bytes;
    platform::ByteChannel* channel = nullptr;  // none while no session is open
};

class TourTester::Channel final : public platform::ByteChannel {
  public:
    explicit Channel(std::shared_ptr<Line> line) : line_(std::move(line)) { line_->channel = this; }
    ~Channel() override { close(); }

    std::size_t bytesAvailable() const override { return line_->bytes.size(); }
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override {
        const auto count = static_cast<std::ptrdiff_t>(std::min(max, line_->bytes.size()));
        std::copy_n(line_->bytes.begin(), count, buffer);
        line_->bytes.erase(line_->bytes.begin(), line_->bytes.begin() + count);
        return count;
    }
    bool hasSpaceAvailable() const override { return true; }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override {
        return static_cast<std::ptrdiff_t>(bytes.size());
    }
    void close() override {
        if (line_->channel == this) line_->channel = nullptr;
    }

  private:
    std::shared_ptr<Line> line_;
};

TourTester::TourTester() : line_(std::make_shared<Line>()) {}

TourTester::~TourTester() = default;

std::unique_ptr<platform::ByteChannel> TourTester::openChannel(const platform::Accessory&,
                                                               const std::string&) {
    return std::make_unique<Channel>(line_);
}

void TourTester::switchOn() {
    accessory_ = std::make_shared<platform::Accessory>();
    accessory_->connectionId = ++appearances_;
    accessory_->name = platform::placeOf(uri());
    accessory_->protocolStrings = {"kestrix.tour"};
    accessory_->opener = this;
    observer_->appeared(accessory_);
}

void TourTester::switchOff() {
    accessory_->opener = nullptr;
    observer_->disappeared(std::exchange(accessory_, nullptr));
}

void TourTester::play(std::string_view scenario) {
    simulator::Player player(std::get<simulator::Scenario>(simulator::parseScenario(scenario)));
    while (!player.finished()) {
        const simulator::Emission emission = player.next();
        line_->bytes.insert(line_->bytes.end(), emission.bytes.begin(), emission.bytes.end());
    }
    if (line_->channel != nullptr) line_->channel->events.bytesAvailable();
}

bool TourTester::allRead() const {
    return line_->bytes.empty();
}

}  // namespace kestrix::tour
