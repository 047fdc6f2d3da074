#include "platform/GeneratedChannel.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kestrix::platform {
namespace {

// A producer may make pieces without bytes and without a wait, without end.
constexpr int kMostEmptyPiecesInATurn = 256;

}  // namespace

// What outlives a channel: the producer and the piece that is due next.
struct GeneratedDialer::Feed {
    std::unique_ptr<ByteProducer> producer;
    ByteProducer::Piece piece;
    bool pending = false;
    bool ended = false;
    bool off = false;  // the last piece closed its channel, and the wait after it is not over
    Scheduler::TimePoint due{};

    // Makes sure that a piece is pending; false at the end.
    bool fetch() {
        if (pending) return true;
        if (ended || !producer->next(piece)) {
            ended = true;
            return false;
        }
        pending = true;
        due += piece.wait;
        return true;
    }
};

class GeneratedDialer::Channel final : public ByteChannel {
  public:
    Channel(std::shared_ptr<Feed> feed, Scheduler& scheduler)
        : feed_(std::move(feed)), scheduler_(scheduler) {
        feed_->due = std::max(feed_->due, scheduler_.now());
        arm();
    }

    std::size_t bytesAvailable() const override { return closed_ ? 0 : bytes_.size() - taken_; }
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override {
        if (closed_ || (ended_ && bytesAvailable() == 0)) return -1;
        const std::size_t count = std::min(max, bytesAvailable());
        if (count > 0) std::memcpy(buffer, bytes_.data() + taken_, count);
        taken_ += count;
        if (taken_ == bytes_.size() || taken_ >= kBufferLimit) {
            bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(taken_));
            taken_ = 0;
        }
        if (full_ && bytesAvailable() < kBufferLimit) arm();
        return static_cast<std::ptrdiff_t>(count);
    }
    bool hasSpaceAvailable() const override { return !closed_ && !ended_; }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override {
        return closed_ || ended_
                   ? -1
                   : static_cast<std::ptrdiff_t>(bytes.size());  // the tester listens to nothing
    }
    void close() override {
        closed_ = true;
        timer_.cancel();
    }

  private:
    // A full buffer has nothing to wait for but its reader.
    void arm() {
        full_ = bytesAvailable() >= kBufferLimit;
        if (full_) return;
        if (!feed_->fetch()) {
            timer_ = scheduler_.callAfter(Scheduler::Duration{0},
                                          [this] { end("the end of what there is to play"); });
            return;
        }
        const auto wait = std::chrono::ceil<Scheduler::Duration>(feed_->due - scheduler_.now());
        timer_ = scheduler_.callAfter(std::max(wait, Scheduler::Duration{0}), [this] { play(); });
    }

    // Plays what is due, but no more in one turn of the event loop than the buffer holds, and not without end
    // where nothing comes of it.
    void play() {
        const Scheduler::TimePoint now = scheduler_.now();
        const std::size_t before = bytesAvailable();
        int empty = 0;
        while (empty < kMostEmptyPiecesInATurn && bytesAvailable() < kBufferLimit && feed_->fetch() &&
               feed_->due <= now) {
            const ByteProducer::Piece& piece = feed_->piece;
            if (piece.bytes.empty()) ++empty;
            bytes_.insert(bytes_.end(), piece.bytes.begin(), piece.bytes.end());
            feed_->pending = false;
            if (!piece.closes) continue;
            feed_->off = true;
            end("the tester was switched off");
            return;
        }
        arm();
        if (bytesAvailable() > before) tellBytes();
    }

    void end(const std::string& why) {
        if (bytesAvailable() > 0) tellBytes();
        ended_ = true;
        const auto tell = events.closed;  // copies: an event may replace the functions
        if (!closed_ && tell) tell(why);
    }

    void tellBytes() {
        const auto tell = events.bytesAvailable;
        if (!closed_ && tell) tell();
    }

    std::shared_ptr<Feed> feed_;
    Scheduler& scheduler_;
    Scheduler::Timer timer_;
    std::vector<std::uint8_t> bytes_;
    std::size_t taken_ = 0;
    bool closed_ = false;
    bool ended_ = false;
    bool full_ = false;
};

GeneratedDialer::GeneratedDialer(MakeProducer makeProducer, Scheduler& scheduler)
    : makeProducer_(std::move(makeProducer)), scheduler_(scheduler) {}

GeneratedDialer::~GeneratedDialer() = default;

void GeneratedDialer::dial(Done done) {
    if (!feed_ || feed_->ended) {
        auto feed = std::make_shared<Feed>();
        std::string problem;
        feed->producer = makeProducer_(problem);
        if (!feed->producer) {
            done({nullptr, FailedStep::Missing, problem});
            return;
        }
        feed_ = std::move(feed);
    }
    if (feed_->off && feed_->fetch() && feed_->due > scheduler_.now()) {
        done({nullptr, FailedStep::NoAnswer, "the tester is switched off"});
        return;
    }
    feed_->off = false;
    done({std::make_unique<Channel>(feed_, scheduler_)});
}

}  // namespace kestrix::platform
