#include "apps/kestrix-cli/TesterLine.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace kestrix::cli {

TesterLine::TesterLine(platform::GeneratedDialer::MakeProducer producers, LineEnd& end,
                       platform::Scheduler& scheduler)
    : dialer_(std::move(producers), scheduler), end_(end), scheduler_(scheduler) {}

TesterLine::~TesterLine() = default;

void TesterLine::clientCame() {
    clientLeft();
    dialer_.dial([this](platform::Dialer::Outcome outcome) { channel_ = std::move(outcome.channel); });
    if (!channel_) {
        end_.hangUp();
        return;
    }
    channel_->events.bytesAvailable = [this] { pump(); };
    channel_->events.closed = [this](const std::string&) {
        sendTheRest();
        clientLeft();
        end_.hangUp();
    };
}

void TesterLine::clientLeft() {
    if (!channel_) return;
    channel_->close();
    buried_ = std::move(channel_);
    burial_ = scheduler_.callAfter(platform::Scheduler::Duration{0}, [this] { buried_.reset(); });
}

// The channel has ended, and holds no more than its buffer.
void TesterLine::sendTheRest() {
    std::array<std::uint8_t, 4096> bytes;
    std::ptrdiff_t count = 0;
    while ((count = channel_->read(bytes.data(), bytes.size())) > 0)
        end_.write(std::span(bytes).first(static_cast<std::size_t>(count)));
}

void TesterLine::pump() {
    std::array<std::uint8_t, 4096> bytes;
    while (channel_) {
        const std::ptrdiff_t count = channel_->read(bytes.data(), std::min(bytes.size(), end_.room()));
        if (count <= 0) return;
        end_.write(std::span(bytes).first(static_cast<std::size_t>(count)));
    }
}

}  // namespace kestrix::cli
