#include "platform/DialingSource.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Log.h"

namespace kestrix::platform {
namespace {

constexpr const char* kProtocol = "kestrix.tester";

std::uint32_t nextConnectionId() {
    static std::uint32_t last = 0;
    if (++last == 0) ++last;
    return last;
}

}  // namespace

// What a session holds: the source keeps the channel itself, to see its silence and its end.
class DialingSource::Tap final : public ByteChannel {
  public:
    explicit Tap(DialingSource& source) : source_(&source) {}
    ~Tap() override { detach(); }

    std::size_t bytesAvailable() const override {
        return channel() != nullptr ? channel()->bytesAvailable() : 0;
    }
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override {
        return channel() != nullptr ? channel()->read(buffer, max) : -1;
    }
    bool hasSpaceAvailable() const override { return channel() != nullptr && channel()->hasSpaceAvailable(); }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override {
        return channel() != nullptr ? channel()->write(bytes) : -1;
    }
    void close() override { detach(); }

    void detach() {
        if (source_ != nullptr && source_->tap_ == this) source_->tap_ = nullptr;
        source_ = nullptr;
    }

  private:
    ByteChannel* channel() const { return source_ != nullptr ? source_->channel_.get() : nullptr; }
    DialingSource* source_;
};

DialingSource::DialingSource(std::string uri, std::string name, std::unique_ptr<Dialer> dialer,
                             Scheduler& scheduler)
    : uri_(std::move(uri)), name_(std::move(name)), dialer_(std::move(dialer)), scheduler_(scheduler) {
    dialer_->peerMayBeBack = [this] {
        if (state_ == SearchState::Waiting) dial();
    };
}

DialingSource::~DialingSource() {
    observer_ = nullptr;
    stop();
}

void DialingSource::start(AccessorySourceObserver& observer) {
    observer_ = &observer;
    if (state_ != SearchState::Stopped) return;
    state_ = SearchState::Waiting;
    retryDelay_ = kFirstRetry;
    timer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { dial(); });
}

void DialingSource::stop() {
    if (state_ == SearchState::Stopped) return;
    dialer_->cancel();
    timer_.cancel();
    state_ = SearchState::Stopped;
    dropChannel();
}

void DialingSource::dial() {
    state_ = SearchState::Dialing;
    timer_ = scheduler_.callAfter(kDialLimit, [this] {
        dialer_->cancel();
        dialed({nullptr, "no answer"});
    });
    dialer_->dial([this](Dialer::Outcome outcome) { dialed(std::move(outcome)); });
}

void DialingSource::dialed(Dialer::Outcome outcome) {
    if (state_ != SearchState::Dialing) return;
    if (!outcome.channel) {
        setProblem(outcome.problem);
        retryLater();
        return;
    }
    state_ = SearchState::Listening;
    channel_ = std::move(outcome.channel);
    channel_->events.bytesAvailable = [this] { bytesCame(); };
    channel_->events.spaceAvailable = [this] {
        if (tap_ != nullptr) tap_->events.spaceAvailable();
    };
    channel_->events.closed = [this](const std::string& why) { lost(why); };
    lastBytes_ = scheduler_.now();
    watchSilence();
    if (channel_->bytesAvailable() > 0)
        deliverTimer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { bytesCame(); });
}

void DialingSource::bytesCame() {
    if (!channel_) return;
    lastBytes_ = scheduler_.now();
    if (state_ == SearchState::Listening) {
        state_ = SearchState::Present;
        retryDelay_ = kFirstRetry;
        problem_.clear();
        accessory_ =
            std::make_shared<Accessory>(Accessory{nextConnectionId(), name_, {kProtocol}, nullptr, this});
        if (observer_ != nullptr) observer_->appeared(accessory_);
    }
    if (tap_ != nullptr) {
        const auto tell = tap_->events.bytesAvailable;  // a copy: the session may close inside
        tell();
    } else {
        discardUnread();
    }
}

// Without a session nobody takes the bytes; kept, they would be stale when one opens, and block the channel.
void DialingSource::discardUnread() {
    std::array<std::uint8_t, 4096> waste;
    while (channel_ && channel_->read(waste.data(), waste.size()) > 0) {
    }
}

// One timer for all bytes: it looks again at the earliest moment at which the silence could have lasted long
// enough.
void DialingSource::watchSilence() {
    const auto quiet = std::chrono::duration_cast<Scheduler::Duration>(scheduler_.now() - lastBytes_);
    if (quiet >= kSilenceLimit) {
        lost(state_ == SearchState::Present ? "silent for 3 s" : "connected, but no bytes come");
        return;
    }
    timer_ = scheduler_.callAfter(kSilenceLimit - quiet, [this] { watchSilence(); });
}

void DialingSource::lost(const std::string& why) {
    if (channel_ && channel_->bytesAvailable() > 0) bytesCame();
    if (!channel_) return;
    setProblem(why);
    retryLater();
    dropChannel();
}

void DialingSource::retryLater() {
    state_ = SearchState::Waiting;
    timer_ = scheduler_.callAfter(retryDelay_, [this] { dial(); });
    retryDelay_ = std::min(2 * retryDelay_, kLastRetry);
}

void DialingSource::dropChannel() {
    deliverTimer_.cancel();
    if (channel_) {
        channel_->close();
        buried_ = std::move(channel_);
        burialTimer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { buried_.reset(); });
    }
    if (Tap* tap = tap_) {
        tap->detach();
        if (tap->events.closed) tap->events.closed(problem_);
    }
    if (const AccessoryPtr gone = std::exchange(accessory_, nullptr)) {
        gone->opener = nullptr;
        if (observer_ != nullptr) observer_->disappeared(gone);
    }
}

std::unique_ptr<ByteChannel> DialingSource::openChannel(const Accessory& accessory,
                                                        const std::string& protocol) {
    if (!channel_ || !accessory_ || accessory.connectionId != accessory_->connectionId ||
        protocol != kProtocol)
        return nullptr;
    if (tap_ != nullptr) tap_->detach();
    auto tap = std::make_unique<Tap>(*this);
    tap_ = tap.get();
    deliverTimer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] {
        if (channel_ && channel_->bytesAvailable() > 0) bytesCame();
    });
    return tap;
}

void DialingSource::setProblem(const std::string& problem) {
    if (problem == problem_) return;
    problem_ = problem;
    qCInfo(lcAccessory).noquote() << QString::fromStdString(uri_ + ": " + problem);
}

}  // namespace kestrix::platform
