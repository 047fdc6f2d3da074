#include "tests/flow/faults/FaultWorld.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <algorithm>
#include <thread>
#include <utility>

#include "link/FrameListener.h"
#include "storage/ServiceDao.h"
#include "tests/protocol/ExpectedRecord.h"
#include "tests/protocol/RecordDifference.h"
#include "tests/support/FrameBuilder.h"
#include "tests/support/LiteralExtraction.h"

namespace kestrix::faults {
namespace {

using platform::SearchState;
using testing::FrameBuilder;
using namespace std::chrono_literals;

constexpr auto kStep = 100ms;
constexpr auto kPace = 250ms;
constexpr auto kBackWithin = 10s;
constexpr auto kSilence = 3s;
constexpr auto kRecordedBytes =
    static_cast<std::ptrdiff_t>(FaultWorld::kRecordedFrames * FrameBuilder::kSize);

std::string hexText(const Bytes& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned byte : bytes) {
        text += kDigits[byte / 16];
        text += kDigits[byte % 16];
    }
    return text;
}

// A tester sent it: the third start byte and the marker are in their places.
bool isTesters(const std::string& frame) {
    return frame.substr(4, 2) == "1e" && frame.substr(16, 4) == "55aa";
}

void resetProcessState() {
    live::MeterDisplay::counters = {};
    link::BluetoothConnect::bConnectNotified = false;
    link::BluetoothConnect::bDisconnectNotified = false;
    link::BluetoothConnect::bBlueConnected = false;
}

}  // namespace

Bytes frameOf(int reading) {
    const auto frame = FrameBuilder('1').reading(1, static_cast<std::uint16_t>(reading), 0).bytes();
    return {frame.begin(), frame.end()};
}

Bytes operator+(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::vector<protocol::MeterReading> readingsOf(const Bytes& bytes) {
    constexpr std::size_t kPiece = 3600;  // the literal way copies what it keeps again and again
    std::vector<protocol::MeterReading> readings;
    testing::LiteralExtraction reader;
    const std::string text = hexText(bytes);
    for (std::size_t at = 0; at < text.size(); at += kPiece) {
        for (const std::string& frame : reader.receive(text.substr(at, kPiece)))
            readings.push_back(protocol::expectedRecord(protocol::expectedBytes(frame)));
    }
    return readings;
}

// Counts what the application's end of the line has heard.
class FaultWorld::CountingListener final : public platform::Listener {
  public:
    explicit CountingListener(std::shared_ptr<Ears> ears) : ears_(std::move(ears)) { ++ears_->lines; }
    CountingListener(const CountingListener&) = delete;
    CountingListener& operator=(const CountingListener&) = delete;
    ~CountingListener() override { ++ears_->drops; }
    std::size_t hear(std::span<const std::uint8_t> bytes) override {
        ears_->heard += bytes.size();
        return listener_->hear(bytes);
    }
    std::size_t undecided() const override { return listener_->undecided(); }

  private:
    std::shared_ptr<Ears> ears_;
    std::unique_ptr<platform::Listener> listener_ = link::makeFrameListener();
};

FaultWorld::FaultWorld(std::unique_ptr<FarEnd> farEnd) : farEnd_(std::move(farEnd)) {
    farEnd_->lines = &ears_->lines;
    resetProcessState();
    storage::ServiceDao(services_.documents).createTable();
    screen_ = makeScreen();
    screen_->loadView();
    screen_->blueConnect->setDelegate(this);
}

FaultWorld::~FaultWorld() {
    screen_.reset();
    resetProcessState();
}

// The wait before a lost session is closed takes its time, during which nothing happens.
std::unique_ptr<live::MainViewController> FaultWorld::makeScreen() {
    return std::make_unique<live::MainViewController>(services_.services(), [this] {
        return std::make_unique<link::BluetoothConnect>(
            services_.accessories, services_.defaults,
            [this](std::chrono::milliseconds time) { services_.scheduler.stall(time); });
    });
}

void FaultWorld::didReceive3820Data(const protocol::MeterReading& record, bool success) {
    EXPECT_TRUE(success);
    EXPECT_EQ(screen_->bluestate, link::kConnected) << "a reading beside state 0";
    records_.push_back(record);
    screen_->didReceive3820Data(record, success);
}

void FaultWorld::begin() {
    auto source = farEnd_->makeSource(services_.scheduler,
                                      [ears = ears_] { return std::make_unique<CountingListener>(ears); });
    source_ = source.get();
    services_.accessories.addSource(std::move(source));
    services_.scheduler.runDue();
    ASSERT_TRUE(opens(Return::InTime));
    const std::vector<Bytes> played = farEnd_->plays();
    Bytes both;
    for (std::size_t i = 1; i <= kRecordedFrames; ++i) {
        const Bytes one = frame();
        both = both + one;
        if (played.empty()) hears(one);
        while (!played.empty() && records_.size() < i && ears_->drops == 0) services_.scheduler.runOne();
        ASSERT_EQ(records_.size(), i);
        screen_->btnRecord.press();
    }
    if (!played.empty()) both.assign(played[0].begin(), played[0].begin() + kRecordedBytes);
    kept_ = listRows();
    ASSERT_EQ(kept_.size(), kRecordedFrames);
    ASSERT_NE(kept_[0], kept_[1]);
    expect(Link::Connected, both);
}

Bytes FaultWorld::frame() {
    return frameOf(nextReading_++);
}

// Never waits for an event: what has to happen next may be a call of the scheduler.
bool FaultWorld::becomes(const std::function<bool()>& condition) {
    const auto latest = std::chrono::steady_clock::now() + 30s;
    while (true) {
        services_.scheduler.runDue();
        if (condition()) return true;
        if (std::chrono::steady_clock::now() > latest) return false;
        QCoreApplication::processEvents();
    }
}

bool FaultWorld::isListening() const {
    return source_->state() == SearchState::Listening || source_->state() == SearchState::Present;
}

// Time passes only while the application waits before it dials again: how long the system takes for its
// answers is no part of what is measured.
bool FaultWorld::opens(Return way) {
    const auto latest = services_.scheduler.now() + 1min;
    return becomes([&] {
        const bool waits = source_->state() == SearchState::Waiting ||
                           (source_->state() == SearchState::Dialing && !farEnd_->answersDials());
        if (waits && way == Return::InTime && services_.scheduler.now() < latest)
            services_.scheduler.advance(kStep);
        return isListening() && farEnd_->isOpen();
    });
}

void FaultWorld::settleDial() {
    EXPECT_TRUE(
        becomes([this] { return source_->state() != SearchState::Dialing || !farEnd_->answersDials(); }));
}

void FaultWorld::sendAll(const Bytes& bytes) {
    std::span<const std::uint8_t> rest(bytes);
    ASSERT_TRUE(becomes([&] {
        rest = rest.subspan(farEnd_->send(rest));
        return rest.empty();
    }));
}

void FaultWorld::hears(const Bytes& bytes) {
    const std::size_t heard = ears_->heard + bytes.size();
    ASSERT_NO_FATAL_FAILURE(sendAll(bytes));
    ASSERT_TRUE(becomes([&] { return ears_->heard >= heard; })) << ears_->heard << " of " << heard;
}

void FaultWorld::hearsAtPace(const Bytes& bytes) {
    testing::LiteralExtraction reader;
    auto lastFrame = services_.scheduler.now();
    for (std::size_t at = 0; at < bytes.size() && !::testing::Test::HasFailure(); at += FrameBuilder::kSize) {
        const std::size_t end = std::min(at + FrameBuilder::kSize, bytes.size());
        const Bytes piece(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                          bytes.begin() + static_cast<std::ptrdiff_t>(end));
        hears(piece);
        const std::vector<std::string> frames = reader.receive(hexText(piece));
        ASSERT_EQ(records_.size(), frames.size()) << "behind byte " << end;
        const auto records = takeRecords();
        for (std::size_t i = 0; i < frames.size(); ++i) {
            EXPECT_EQ(protocol::firstDifference(protocol::expectedRecord(protocol::expectedBytes(frames[i])),
                                                records[i]),
                      "")
                << "behind byte " << end;
            if (isTesters(frames[i])) lastFrame = services_.scheduler.now();
        }
        passes(kPace);
        ASSERT_LT(services_.scheduler.now() - lastFrame, kSilence) << "not what this row is for";
        expectLink(Link::Connected);
    }
    expectList();
}

void FaultWorld::playsToItsEnd(bool away) {
    const Bytes played = farEnd_->plays().front();
    while (ears_->drops == 0 && services_.scheduler.runOne()) {
        if (ears_->drops == 0) expectLink(Link::Connected);
    }
    expect(Link::Gone, Bytes(played.begin() + kRecordedBytes, played.end()));
    if (away) {
        passes(10s);
        expect(Link::Gone);
        farEnd_->comeBack();
    }
    const auto end = services_.scheduler.now();
    while (records_.empty() && services_.scheduler.now() - end < kBackWithin) services_.scheduler.runOne();
    expect(Link::Connected, Bytes(played.begin(), played.begin() + FrameBuilder::kSize));
}

void FaultWorld::playsThrough(int losses) {
    std::vector<protocol::MeterReading> expected;
    for (const Bytes& line : farEnd_->plays()) {
        for (protocol::MeterReading& reading : readingsOf(line)) expected.push_back(std::move(reading));
    }
    expected.erase(expected.begin(), expected.begin() + kRecordedFrames);
    std::size_t seen = 0;
    auto lastRecord = services_.scheduler.now();
    int gone = 0;
    bool wasConnected = true;
    const auto latest = services_.scheduler.now() + 1min;
    while (records_.size() < expected.size() && services_.scheduler.now() < latest) {
        services_.scheduler.runOne();
        if (records_.size() > seen) lastRecord = services_.scheduler.now();
        seen = records_.size();
        gone += wasConnected && !isConnected() ? 1 : 0;
        wasConnected = isConnected();
        expectLink(wasConnected ? Link::Connected : Link::Gone);
        if (services_.scheduler.now() - lastRecord > kSilence) expectLink(Link::Gone);
        expectList();
    }
    EXPECT_EQ(gone, losses);
    expectRecords(expected);
    expect(Link::Connected);
}

void FaultWorld::leavesWaiting(const Bytes& bytes) {
    ASSERT_EQ(farEnd_->leaveWaiting(bytes), bytes.size());
    const auto latest = std::chrono::steady_clock::now() + 30s;
    while (!farEnd_->hasArrived(bytes.size()) && std::chrono::steady_clock::now() < latest)
        std::this_thread::yield();
}

void FaultWorld::passes(Milliseconds time) {
    const auto end = services_.scheduler.now() + time;
    while (services_.scheduler.now() < end && !::testing::Test::HasFailure()) {
        settleDial();
        services_.scheduler.advance(std::min<Milliseconds>(
            kStep, std::chrono::duration_cast<Milliseconds>(end - services_.scheduler.now())));
        QCoreApplication::processEvents();
    }
    settleDial();
}

void FaultWorld::stalls(Milliseconds time) {
    services_.scheduler.stall(time);
    takeTurns();
}

void FaultWorld::sleeps(Milliseconds time) {
    services_.now += time;
    services_.scheduler.sleep(time);
    takeTurns();
}

void FaultWorld::takeTurns() {
    // Timers and lines in turns, as the event loop takes them: the timers first, which is the worse order.
    services_.scheduler.runTurn();
    farEnd_->tellOfWaiting();
    do {
        QCoreApplication::processEvents();
    } while (services_.scheduler.runTurn());
}

void FaultWorld::drops(const std::function<void()>& how) {
    const int before = ears_->drops;
    how();
    EXPECT_TRUE(becomes([&] { return ears_->drops > before; }));
}

void FaultWorld::isReachedAgain(Return way) {
    farEnd_->comeBack();
    EXPECT_TRUE(opens(way));
}

void FaultWorld::comesBack(Return way, const Bytes& first) {
    const auto back = services_.scheduler.now();
    isReachedAgain(way);
    const std::size_t before = records_.size();
    EXPECT_EQ(before, 0U) << "records that nobody has looked at";
    const Bytes all = first + frame();
    hears(all);
    EXPECT_LE(services_.scheduler.now() - back, kBackWithin);
    expect(Link::Connected, all);
    const Bytes next = frame();
    hears(next);
    expect(Link::Connected, next);
}

void FaultWorld::expect(Link link, const Bytes& records, const char* file, int line) {
    const ::testing::ScopedTrace trace(file, line, "looked at here");
    expectLink(link);
    const auto expected = readingsOf(records);
    expectRecords(expected);
    if (link == Link::Connected && !expected.empty()) {
        EXPECT_EQ(screen_->D1Value.text().toStdString(), expected.back().strValue1);
    }
    expectList();
}

void FaultWorld::expectRecords(const std::vector<protocol::MeterReading>& expected) {
    const auto actual = takeRecords();
    EXPECT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < std::min(actual.size(), expected.size()); ++i)
        EXPECT_EQ(protocol::firstDifference(expected[i], actual[i]), "") << "record " << i;
}

void FaultWorld::expectLink(Link link) const {
    const bool connected = link == Link::Connected;
    EXPECT_EQ(screen_->bluestate, connected ? link::kConnected : link::kNotConnected);
    EXPECT_EQ(services_.defaults.integerForKey(QLatin1String(link::kBlueState)), screen_->bluestate);
    EXPECT_EQ(screen_->lblNoCon.hidden(), connected);
    EXPECT_EQ(screen_->btnHelp.hidden(), connected);
    if (connected) return;
    EXPECT_TRUE(screen_->D1Value.hidden()) << "a reading of a tester that has gone";
    EXPECT_TRUE(screen_->D2Value.hidden());
    EXPECT_EQ(screen_->litTitle(), nullptr);
    EXPECT_TRUE(screen_->blueImage.hidden());
}

void FaultWorld::expectList() const {
    EXPECT_EQ(listRows(), kept_);
    EXPECT_EQ(databaseRows(), kept_);
}

std::vector<std::string> FaultWorld::listRows() const {
    std::vector<std::string> rows;
    for (int i = 0; i < screen_->array.count(); ++i) {
        const live::SessionRow row = screen_->array.row(i);
        rows.push_back(row.DataName + "|" + row.Function + "|" + row.Parameters + "|" + row.Result + "|" +
                       row.DateTime + "|" + row.Comments);
    }
    return rows;
}

std::vector<std::string> FaultWorld::databaseRows() const {
    std::vector<std::string> rows;
    for (const storage::MeasureData& row : storage::ServiceDao(services_.documents).findMeasureForm(false))
        rows.push_back(row.dataName + "|" + row.function + "|" + row.parameters + "|" + row.result + "|" +
                       row.dateTime + "|" + row.comments);
    return rows;
}

void FaultWorld::addTester(std::unique_ptr<FarEnd> farEnd) {
    services_.accessories.addSource(farEnd->makeSource(services_.scheduler, link::makeFrameListener));
    others_.push_back(std::move(farEnd));
    services_.scheduler.runDue();
}

}  // namespace kestrix::faults
