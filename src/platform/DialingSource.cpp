#include "platform/DialingSource.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "platform/Log.h"
#include "platform/PrintableText.h"
#include "platform/SourcePlace.h"

namespace kestrix::platform {
namespace {

constexpr const char* kProtocol = "kestrix.tester";

std::uint32_t nextConnectionId() {
    static std::uint32_t last = 0;
    if (++last == 0) ++last;
    return last;
}

// Reads from bytes[taken, end) and moves `taken` on; what has been read is dropped when all of that has been.
std::size_t copyFrom(std::vector<std::uint8_t>& bytes, std::size_t& taken, std::size_t end,
                     std::uint8_t* buffer, std::size_t max) {
    const std::size_t count = std::min(max, end - taken);
    if (count > 0) std::memcpy(buffer, bytes.data() + taken, count);
    taken += count;
    if (taken == end) {
        bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(taken));
        taken = 0;
    }
    return count;
}

}  // namespace

// What a session holds: the source keeps the channel itself, to hear it and to see its end.
class DialingSource::Tap final : public ByteChannel {
  public:
    explicit Tap(DialingSource& source) : source_(&source) {}
    ~Tap() override { close(); }

    std::size_t bytesAvailable() const override {
        return source_ != nullptr ? source_->decidedEnd() - source_->inboxTaken_ : rest_.size() - restTaken_;
    }
    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) override {
        if (source_ == nullptr) {
            const std::size_t count = copyFrom(rest_, restTaken_, rest_.size(), buffer, max);
            return count > 0 ? static_cast<std::ptrdiff_t>(count) : -1;
        }
        const bool wasFull = source_->inbox_.size() >= kBufferLimit;
        const std::size_t count =
            copyFrom(source_->inbox_, source_->inboxTaken_, source_->decidedEnd(), buffer, max);
        if (wasFull && bytesAvailable() == 0)
            source_->moreTimer_ = source_->scheduler_.callAfter(Scheduler::Duration{0},
                                                                [source = source_] { source->takeIn(); });
        return static_cast<std::ptrdiff_t>(count);
    }
    bool hasSpaceAvailable() const override { return channel() != nullptr && channel()->hasSpaceAvailable(); }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override {
        return channel() != nullptr ? channel()->write(bytes) : -1;
    }
    void close() override {
        rest_.clear();
        restTaken_ = 0;
        if (source_ != nullptr && source_->tap_ == this) source_->tap_ = nullptr;
        source_ = nullptr;
    }

    // The channel has gone. What had come by then stays to be read.
    void leave(std::vector<std::uint8_t> rest, std::size_t taken) {
        rest_ = std::move(rest);
        restTaken_ = taken;
        source_ = nullptr;
    }

  private:
    ByteChannel* channel() const { return source_ != nullptr ? source_->channel_.get() : nullptr; }
    DialingSource* source_;
    std::vector<std::uint8_t> rest_;
    std::size_t restTaken_ = 0;
};

DialingSource::DialingSource(std::string uri, std::unique_ptr<Dialer> dialer, ListenerFactory listeners,
                             Scheduler& scheduler)
    : uri_(std::move(uri)),
      dialer_(std::move(dialer)),
      listeners_(std::move(listeners)),
      scheduler_(scheduler) {
    dialer_->peerMayBeBack = [this] {
        retryDelay_ = kFirstRetry;
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
    enter(SearchState::Waiting);
    retryDelay_ = kFirstRetry;
    timer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { dial(); });
}

void DialingSource::stop() {
    if (state_ == SearchState::Stopped) return;
    ++attempt_;
    dialer_->cancel();
    timer_.cancel();
    state_ = SearchState::Stopped;
    dropChannel();
    tellSearch();
}

void DialingSource::enter(SearchState state) {
    state_ = state;
    tellSearch();
}

void DialingSource::tellSearch() {
    if (observer_ != nullptr) observer_->searchChanged();
}

void DialingSource::dial() {
    enter(SearchState::Dialing);
    dialedAt_ = scheduler_.now();
    const std::uint32_t attempt = ++attempt_;
    timer_ = scheduler_.callAfter(dialer_->timeLimit(), [this] {
        ++attempt_;
        dialer_->cancel();
        dialed({nullptr, FailedStep::NoAnswer, "no answer"});
    });
    dialer_->dial([this, attempt](Dialer::Outcome outcome) {
        if (attempt == attempt_) dialed(std::move(outcome));
    });
}

void DialingSource::dialed(Dialer::Outcome outcome) {
    ++attempt_;
    if (!outcome.channel) {
        if (!outcome.peerName.empty()) peerName_ = printableText(outcome.peerName);
        setProblem({outcome.step, printableText(outcome.problem)});
        retryLater();
        return;
    }
    peerName_ = printableText(outcome.peerName);
    state_ = SearchState::Listening;
    channel_ = std::move(outcome.channel);
    listener_ = listeners_();
    channel_->events.bytesAvailable = [this] { takeIn(); };
    channel_->events.spaceAvailable = [this] { tellSpace(); };
    channel_->events.closed = [this](const std::string& why) { ended(why); };
    wasHeard();
    bytesSinceFrame_ = false;
    watchSilence();
    tellSearch();
    if (channel_->bytesAvailable() > 0)
        moreTimer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { takeIn(); });
}

void DialingSource::wasHeard() {
    lastFrame_ = scheduler_.now();
    asleepAtFrame_ = scheduler_.asleep();
}

// Everything that comes goes this way: it is heard, it may make the tester appear, and it is handed on.
void DialingSource::takeIn() {
    if (!channel_) return;
    // What waits was sent before that, and the line may be dead without knowing it.
    if (scheduler_.asleep() - asleepAtFrame_ >= kSilenceLimit)
        return lost({FailedStep::Ended, "the computer was asleep"});
    if (hearWhatWaits() > 0) {
        wasHeard();
        if (state_ == SearchState::Listening) appear();
    }
    handOn();
    if (channel_ && channel_->bytesAvailable() > 0 && inbox_.size() < ByteChannel::kBufferLimit)
        moreTimer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { takeIn(); });
}

// Reads and hears as much as one turn of the event loop may take. Returns how many whole frames were heard.
std::size_t DialingSource::hearWhatWaits() {
    std::array<std::uint8_t, 4096> piece;
    std::size_t frames = 0;
    for (std::size_t taken = 0;
         taken < ByteChannel::kBufferLimit && inbox_.size() < ByteChannel::kBufferLimit;) {
        const std::size_t room = ByteChannel::kBufferLimit - inbox_.size();
        const std::ptrdiff_t count = channel_->read(piece.data(), std::min(piece.size(), room));
        if (count <= 0) break;
        const auto bytes = std::span(piece).first(static_cast<std::size_t>(count));
        taken += bytes.size();
        inbox_.insert(inbox_.end(), bytes.begin(), bytes.end());
        const std::size_t heard = listener_->hear(bytes);
        frames += heard;
        bytesSinceFrame_ = heard == 0 || listener_->undecided() > 0;
        if (state_ == SearchState::Listening && frames == 0 && inbox_.size() > listener_->undecided())
            inbox_.erase(inbox_.begin(), inbox_.end() - static_cast<std::ptrdiff_t>(listener_->undecided()));
    }
    return frames;
}

void DialingSource::appear() {
    state_ = SearchState::Present;
    retryDelay_ = kFirstRetry;
    problem_ = {};
    tellSearch();
    dialer_->heard();
    accessory_ = std::make_shared<Accessory>(Accessory{
        nextConnectionId(), peerName_.empty() ? placeOf(uri_) : peerName_, {kProtocol}, nullptr, this});
    const std::vector<std::uint8_t> judged = std::exchange(inbox_, {});
    if (observer_ != nullptr) observer_->appeared(accessory_);
    if (tap_ != nullptr) inbox_.insert(inbox_.begin(), judged.begin(), judged.end());
}

// A frame is handed on when it is whole: half a frame of a tester that goes would be continued by the first
// bytes of the next one, to a reading that nobody has measured.
std::size_t DialingSource::decidedEnd() const {
    const std::size_t undecided = listener_ ? listener_->undecided() : 0;
    return std::max(inboxTaken_, inbox_.size() - std::min(undecided, inbox_.size()));
}

// Without a session nobody takes the bytes; kept, they would be stale when one opens, and block the channel.
void DialingSource::handOn() {
    if (state_ != SearchState::Present) return;
    if (tap_ == nullptr) {
        inbox_.clear();
        inboxTaken_ = 0;
    } else if (tap_->bytesAvailable() > 0 && tap_->events.bytesAvailable) {
        const auto tell = tap_->events.bytesAvailable;  // a copy: the session may close inside
        tell();
    }
}

void DialingSource::tellSpace() {
    if (tap_ == nullptr || !tap_->events.spaceAvailable || !tap_->hasSpaceAvailable()) return;
    const auto tell = tap_->events.spaceAvailable;
    tell();
}

// What came before the end is heard and handed on first.
void DialingSource::ended(const std::string& why) {
    std::size_t before = 0;
    while (channel_ && channel_->bytesAvailable() > 0 && channel_->bytesAvailable() != before) {
        before = channel_->bytesAvailable();
        takeIn();
    }
    if (channel_) lost({FailedStep::Ended, printableText(why)});
}

// One timer for all frames: it looks again at the earliest moment at which the silence could have lasted long
// enough.
void DialingSource::watchSilence() {
    const auto quiet = std::chrono::duration_cast<Scheduler::Duration>(scheduler_.now() - lastFrame_);
    if (isOpening()) {
        timer_ = scheduler_.callAfter(kOpeningTime - quiet, [this] {
            watchSilence();
            if (state_ == SearchState::Listening) tellSearch();  // currentProblem() is another one now
        });
        return;
    }
    if (quiet < kSilenceLimit) {
        timer_ = scheduler_.callAfter(kSilenceLimit - quiet, [this] { watchSilence(); });
        return;
    }
    // The main thread may have been busy while frames came. They are read in this turn of the event loop,
    // whichever comes first in it, so the verdict waits for the next one.
    timer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { judgeSilence(); });
}

void DialingSource::judgeSilence() {
    takeIn();
    if (!channel_) return;
    // A session that leaves a full inbox unread keeps the tester waiting, which therefore cannot be heard.
    if (inbox_.size() >= ByteChannel::kBufferLimit) wasHeard();
    if (scheduler_.now() - lastFrame_ < kSilenceLimit) {
        watchSilence();
    } else {
        lost(silence());
    }
}

DialingSource::Problem DialingSource::silence() const {
    const std::string limit =
        std::to_string(std::chrono::duration_cast<std::chrono::seconds>(kSilenceLimit).count()) + " s";
    if (state_ != SearchState::Present)
        return bytesSinceFrame_ ? Problem{FailedStep::NoFrames, "bytes come, but no valid frame"}
                                : Problem{FailedStep::NoBytes, "connected, but no bytes come"};
    return bytesSinceFrame_ ? Problem{FailedStep::NoFrames, "no valid frame for " + limit}
                            : Problem{FailedStep::NoBytes, "silent for " + limit};
}

bool DialingSource::isOpening() const {
    return state_ == SearchState::Listening && scheduler_.now() - lastFrame_ < kOpeningTime;
}

// An open channel has outlived the reason of a failed dial. That bytes came without a frame says more than
// that none have come yet this time.
DialingSource::Problem DialingSource::currentProblem() const {
    if (state_ != SearchState::Listening) return problem_;
    const bool hadNoFrames = problem_.step == FailedStep::NoFrames;
    if (isOpening()) return hadNoFrames ? problem_ : Problem{};
    return hadNoFrames && !bytesSinceFrame_ ? problem_ : silence();
}

void DialingSource::lost(Problem problem) {
    setProblem(std::move(problem));
    retryLater();
    dropChannel();
}

void DialingSource::retryLater() {
    enter(SearchState::Waiting);
    // A dial that took long has waited already.
    const auto taken = std::chrono::duration_cast<Scheduler::Duration>(scheduler_.now() - dialedAt_);
    timer_ = scheduler_.callAfter(std::max(kFirstRetry, retryDelay_ - taken), [this] { dial(); });
    retryDelay_ = std::min(2 * retryDelay_, kLastRetry);
}

// Everything of the channel is put away before anybody is told, for who is told may stop or start this
// source.
void DialingSource::dropChannel() {
    moreTimer_.cancel();
    greetingTimer_.cancel();
    if (channel_) {
        channel_->close();
        buried_.push_back(std::move(channel_));
        burialTimer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { buried_.clear(); });
    }
    inbox_.resize(decidedEnd());
    listener_.reset();
    std::vector<std::uint8_t> rest = std::exchange(inbox_, {});
    const std::size_t restTaken = std::exchange(inboxTaken_, 0);
    const AccessoryPtr gone = std::exchange(accessory_, nullptr);
    if (gone) gone->opener = nullptr;
    if (Tap* tap = std::exchange(tap_, nullptr)) {
        tap->leave(std::move(rest), restTaken);
        const auto closed = tap->events.closed;  // a copy: the session may end inside
        if (closed) closed(problem_.text);
    }
    if (gone && observer_ != nullptr) observer_->disappeared(gone);
}

std::unique_ptr<ByteChannel> DialingSource::openChannel(const Accessory& accessory,
                                                        const std::string& protocol) {
    if (!channel_ || !accessory_ || accessory.connectionId != accessory_->connectionId ||
        protocol != kProtocol)
        return nullptr;
    if (tap_ != nullptr) tap_->close();
    inbox_.clear();
    inboxTaken_ = 0;
    auto tap = std::make_unique<Tap>(*this);
    tap_ = tap.get();
    greetingTimer_ = scheduler_.callAfter(Scheduler::Duration{0}, [this] { tellSpace(); });
    return tap;
}

void DialingSource::setProblem(Problem problem) {
    const bool same = problem.text == problem_.text;
    problem_ = std::move(problem);
    if (same) return;
    qCInfo(lcAccessory).noquote() << QString::fromStdString(printableText(uri_) + ": " + problem_.text);
}

}  // namespace kestrix::platform
